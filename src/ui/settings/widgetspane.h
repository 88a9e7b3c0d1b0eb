// Settings ▸ Widgets.
#pragma once

#include "ui/settings/settingspane.h"

#include <functional>

class QCheckBox;

namespace ellwynd {

/// What the desktop widgets show, and when they start.
class WidgetsPane : public SettingsPane {
    Q_OBJECT

  public:
    /// Starts a program by its path as a detached process; false on failure.
    using Start = std::function<bool(const QString &program)>;

    WidgetsPane(UserDefaults &defaults, const Appearance &appearance, Start start);

    [[nodiscard]] static bool startDetached(const QString &program);

  protected:
    void showPreferences() override;
    /// Reads the autostart entry, which the desktop's settings may have changed.
    void showEvent(QShowEvent *event) override;

  private:
    void showWidgets();
    void setAutostart(bool on);
    void showFailure(const QString &what);

    Start start;
    QCheckBox *hideNames;
    QCheckBox *withSession;
    QLabel *failure;
};

} // namespace ellwynd
