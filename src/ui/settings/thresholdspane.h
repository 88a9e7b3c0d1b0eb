// Settings ▸ Risk Thresholds: the defaults of every course.
#pragma once

#include "ui/settings/settingspane.h"

class QDoubleSpinBox;
class QSpinBox;

namespace ellwynd {

class ThresholdsPane : public SettingsPane {
    Q_OBJECT

  public:
    ThresholdsPane(UserDefaults &defaults, const Appearance &appearance);

  protected:
    void showPreferences() override;

  private:
    QDoubleSpinBox *passing;
    QSpinBox *inactivity;
};

} // namespace ellwynd
