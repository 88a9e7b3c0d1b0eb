// Settings ▸ Widgets.
#pragma once

#include "platform/session/widgetservice.h"
#include "ui/settings/settingspane.h"

#include <functional>

class QCheckBox;

namespace ellwynd {

/// What the desktop widgets show, and when they start.
class WidgetsPane : public SettingsPane {
    Q_OBJECT

  public:
    /// The process of the widgets.
    struct Process {
        /// Asks the running widgets to come to the front.
        std::function<void(std::function<void(widgetService::Answer)> answered)> show =
            widgetService::show;
        /// Starts them by their program's path. Returns an error message; absent on success.
        std::function<std::optional<std::string>(const QString &program)> start = startInFront;
    };

    WidgetsPane(UserDefaults &defaults, const Appearance &appearance, Process process);
    WidgetsPane(UserDefaults &defaults, const Appearance &appearance)
        : WidgetsPane(defaults, appearance, Process()) {}

  protected:
    void showPreferences() override;
    /// Reads the autostart entry, which the desktop's settings may have changed.
    void showEvent(QShowEvent *event) override;

  private:
    static std::optional<std::string> startInFront(const QString &program);
    void showWidgets();
    void widgetsDidAnswer(widgetService::Answer answer);
    void setAutostart(bool on);
    void showResult(const QString &what, bool failed);

    Process process;
    QCheckBox *hideNames;
    QCheckBox *withSession;
    QLabel *result;
};

} // namespace ellwynd
