// Settings ▸ Risk Thresholds: the defaults of every course.
#pragma once

#include "app/roster/rosterloader.h"
#include "app/undo/preferenceedit.h"
#include "ui/settings/settingspane.h"

#include <functional>

namespace ellwynd {

class ThresholdEditor;

/// All courses in memory, as scored now.
using ScoredCourses = std::function<std::vector<SharedCourse>()>;

/// Changes of each default can be undone. Their effect on the courses in memory is shown.
class ThresholdsPane : public SettingsPane {
    Q_OBJECT

  public:
    /// @param undo must outlive the pane.
    ThresholdsPane(
        UserDefaults &defaults, UndoStack &undo, ScoredCourses courses,
        const Appearance &appearance);

    /// Call when all courses were scored again.
    void showEffect();

  protected:
    void showPreferences() override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

  private:
    ThresholdEditor *passing;
    ThresholdEditor *inactivity;
    ScoredCourses courses;
    /// The courses as they were when the pane was shown; none while it is hidden.
    std::vector<SharedCourse> before;
    /// The defaults at that time.
    CourseThresholds defaultsBefore;
    QLabel *effectTitle;
    QLabel *effectNames;
    PreferenceEditor passingEdits;
    PreferenceEditor inactivityEdits;
};

} // namespace ellwynd
