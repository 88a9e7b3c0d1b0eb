// "Risk Thresholds…": the thresholds of one course.
#pragma once

#include "app/roster/rosterloader.h"
#include "app/undo/preferenceedit.h"
#include "ui/support/sheet.h"

class QCheckBox;
class QLabel;
class QPushButton;

namespace ellwynd {

class Appearance;
class ThresholdEditor;

/// Edits one course's thresholds. Every change is saved at once, and the roster is scored again.
class ThresholdsSheet : public Sheet {
    Q_OBJECT

  public:
    /// @param before the course as scored when the sheet opens, with which the effect of changes is
    ///        compared; null shows no effect.
    ThresholdsSheet(
        std::int64_t courseID, const std::string &courseName, SharedCourse before,
        UserDefaults &defaults, const Appearance &appearance, QWidget *parent);

    void done(int result) override;

  Q_SIGNALS:
    /// The sheet was closed.
    /// @param edit what it has changed; may be empty.
    void editDidEnd(const ellwynd::PreferenceEdit &edit);

  private:
    /// Sets every control from the preferences.
    void showThresholds();
    void showEffect(const CourseThresholds &thresholds);
    void writePassing();
    void writeInactivity();
    void write(std::string_view suffix, std::optional<PreferenceValue> value);

    std::int64_t courseID;
    SharedCourse before;
    UserDefaults &defaults;
    QLabel *summary;
    /// How many are flagged instead of how many, and below, who becomes what.
    QLabel *effectTitle;
    QLabel *effectNames;
    QCheckBox *ownPassing;
    ThresholdEditor *passing;
    QCheckBox *ownInactivity;
    ThresholdEditor *inactivity;
    QPushButton *followDefaults;
    PreferenceEdit edit;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
