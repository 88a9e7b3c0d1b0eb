// Settings ▸ Risk Thresholds: the defaults of every course.
#pragma once

#include "app/undo/preferenceedit.h"
#include "ui/settings/settingspane.h"

namespace ellwynd {

class ThresholdEditor;

/// Changes of each default can be undone.
class ThresholdsPane : public SettingsPane {
    Q_OBJECT

  public:
    /// @param undo must outlive the pane.
    ThresholdsPane(UserDefaults &defaults, UndoStack &undo, const Appearance &appearance);

  protected:
    void showPreferences() override;

  private:
    ThresholdEditor *passing;
    ThresholdEditor *inactivity;
    PreferenceEditor passingEdits;
    PreferenceEditor inactivityEdits;
};

} // namespace ellwynd
