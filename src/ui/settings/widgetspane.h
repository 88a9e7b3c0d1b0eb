// Settings ▸ Widgets.
#pragma once

#include "ui/settings/settingspane.h"

#include <functional>

class QCheckBox;

namespace ellwynd {

/// What the desktop widgets show, and a way to have them on the desktop.
class WidgetsPane : public SettingsPane {
    Q_OBJECT

  public:
    /// Starts a program by its path, detached from this one; false when it could not be started.
    using Start = std::function<bool(const QString &program)>;

    WidgetsPane(UserDefaults &defaults, const Appearance &appearance, Start start);

    [[nodiscard]] static bool startDetached(const QString &program);

  protected:
    void showPreferences() override;
    /// What starts with the session is also set in the desktop's own settings.
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
