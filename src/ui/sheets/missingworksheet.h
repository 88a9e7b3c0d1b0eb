// "Missing Work by Assignment…".
#pragma once

#include "risk/missedwork.h"
#include "ui/support/sheet.h"

class QPushButton;
class QTableView;

namespace ellwynd {

class Appearance;
class MissingWorkModel;

/// Lists a course's missing work, most missed first. Choosing an assignment with the button, a
/// double click or Return closes the sheet.
class MissingWorkSheet : public Sheet {
    Q_OBJECT

  public:
    MissingWorkSheet(
        std::vector<MissedAssignment> work, std::int64_t rosterSize, const Appearance &appearance,
        QWidget *parent);

  Q_SIGNALS:
    /// The roster should select exactly these students.
    void studentsRequested(const std::vector<std::int64_t> &studentIDs);

  private:
    void choose();

    MissingWorkModel *model;
    QTableView *table;
    QPushButton *showStudents;
};

} // namespace ellwynd
