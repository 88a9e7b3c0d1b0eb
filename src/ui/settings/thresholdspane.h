// Settings ▸ Risk Thresholds: the defaults of every course.
#pragma once

#include "app/undo/preferenceedit.h"
#include "ui/settings/settingspane.h"

namespace ellwynd {

class ThresholdEditor;
class ThresholdEffectView;
struct RosterCache;

/// Changes of each default can be undone. Their effect on the courses in memory is shown.
class ThresholdsPane : public SettingsPane {
    Q_OBJECT

  public:
    /// @param rosters the courses in memory. The references must outlive this object.
    ThresholdsPane(
        UserDefaults &defaults, UndoStack &undo, const RosterCache &rosters,
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
    ThresholdEffectView *effect;
    PreferenceEditor passingEdits;
    PreferenceEditor inactivityEdits;
};

} // namespace ellwynd
