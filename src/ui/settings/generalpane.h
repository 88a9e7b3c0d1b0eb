// Settings ▸ General.
#pragma once

#include "ui/settings/settingspane.h"

class QCheckBox;
class QComboBox;
class QSpinBox;

namespace ellwynd {

/// Appearance, accent, text size, the sidebar's terms, the roster's rows, and updates.
class GeneralPane : public SettingsPane {
    Q_OBJECT

  public:
    GeneralPane(UserDefaults &defaults, const Appearance &appearance);

    /// Whether this build checks for updates, so that the setting is shown.
    void setUpdateChecksAvailable(bool available);

  protected:
    void showPreferences() override;

  private:
    /// Writes or removes the entry of the desktop's autostart folder.
    void startWithSession(bool on);

    QComboBox *appearanceChoice;
    QComboBox *accent;
    QSpinBox *textSize;
    QSpinBox *terms;
    QCheckBox *compactRows;
    QCheckBox *keepRunning;
    /// Starts in the background with the session.
    QCheckBox *withSession;
    QCheckBox *updates;
    QLabel *updatesLabel = nullptr;
};

} // namespace ellwynd
