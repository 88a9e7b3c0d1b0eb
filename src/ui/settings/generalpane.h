// Settings ▸ General.
#pragma once

#include "ui/settings/settingspane.h"

class QCheckBox;
class QComboBox;
class QSpinBox;

namespace ellwynd {

/// Appearance, accent, text size, the sidebar's terms and the roster's rows.
class GeneralPane : public SettingsPane {
    Q_OBJECT

  public:
    GeneralPane(UserDefaults &defaults, const Appearance &appearance);

  protected:
    void showPreferences() override;

  private:
    QComboBox *appearanceChoice;
    QComboBox *accent;
    QSpinBox *textSize;
    QSpinBox *terms;
    QCheckBox *compactRows;
};

} // namespace ellwynd
