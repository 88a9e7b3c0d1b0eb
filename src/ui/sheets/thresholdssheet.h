// "Risk Thresholds…": the thresholds of one course.
#pragma once

#include "risk/coursethresholds.h"
#include "ui/support/sheet.h"

class QCheckBox;
class QDoubleSpinBox;
class QLabel;
class QPushButton;
class QSpinBox;

namespace ellwynd {

class Appearance;

/// Edits one course's thresholds. Every change is saved at once, and the roster is scored again.
class ThresholdsSheet : public Sheet {
    Q_OBJECT

  public:
    ThresholdsSheet(
        std::int64_t courseID, const std::string &courseName, UserDefaults &defaults,
        const Appearance &appearance, QWidget *parent);

  private:
    /// Sets every control from the preferences.
    void showThresholds();
    void writePassing();
    void writeInactivity();

    std::int64_t courseID;
    UserDefaults &defaults;
    QLabel *summary;
    QCheckBox *ownPassing;
    QDoubleSpinBox *passing;
    QCheckBox *ownInactivity;
    QSpinBox *inactivity;
    QPushButton *followDefaults;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
