// "Look Back…".
#pragma once

#include "app/explain/lookback.h"
#include "ui/support/sheet.h"

namespace ellwynd {

class Appearance;

/// Shows the recorded levels of a course's students as a grid, and what came of the teacher's
/// messages. Choosing a student with a double click or Return closes the sheet.
class LookBackSheet : public Sheet {
    Q_OBJECT

  public:
    /// @param outreach below the grid: what came of the messages.
    LookBackSheet(
        LookBack look, const QString &courseName, const QString &outreach,
        const Appearance &appearance, QWidget *parent);

  Q_SIGNALS:
    void studentRequested(std::int64_t studentID);
};

} // namespace ellwynd
