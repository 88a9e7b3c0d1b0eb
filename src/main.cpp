#include "app/mainwindowcontroller.h"
#include "app/syncservice.h"
#include "canvas/connectioncheck.h"
#include "platform/files.h"
#include "platform/launcharguments.h"
#include "platform/notifications/usernotifications.h"
#include "platform/wake.h"
#include "platform/widgettimelines.h"
#include "ui/mainwindow.h"
#include "ui/support/appearance.h"

#include <QApplication>
#include <QTimer>

int main(int argc, char **argv) {
    using namespace ellwynd;
    // Before the application takes its own options away.
    const LaunchArguments arguments =
        parseLaunchArguments(std::vector<std::string>(argv + 1, argv + argc));

    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Ellwynd"));
    QApplication::setDesktopFileName(QStringLiteral("com.varnok.Ellwynd"));

    UserDefaults defaults(directories::config() / "Preferences.json", arguments.domain);
    defaults.watch();
    Settings settings(defaults);
    Appearance appearance(settings, desktopPrefersDark());
    SecretService secrets;
    CanvasSession session;
    const Connector connector(defaults, secrets, session);
    ConnectionCheck connection(defaults, secrets, session);
    Stores stores(defaults, directories::data());
    TrendSync trends(defaults);
    SyncService sync(defaults, trends, directories::state() / "CloudSeen.json");
    DesktopNotifications notifications;
    MovementNotifier notices(defaults, notifications, [] {
        return QGuiApplication::applicationState() == Qt::ApplicationActive;
    });
    WidgetSnapshotWriter widgets(directories::widgetContainer(), widgetTimelines::reloadAll);
    MainWindowController controller(
        defaults, connector, stores, trends, {.widgets = widgets, .notices = &notices});
    MainWindow window(controller, defaults, stores, connection, sync, notifications, appearance);
    QObject::connect(
        &sync, &SyncService::settingsDidSyncExternally, &controller,
        &MainWindowController::refresh);
    QObject::connect(
        &notices, &MovementNotifier::courseShouldOpen, &controller,
        &MainWindowController::showCourse);
    QObject::connect(
        &application, &QGuiApplication::applicationStateChanged, &controller,
        [&controller](Qt::ApplicationState state) {
            if (state == Qt::ApplicationActive)
                controller.cameBack();
        });
    const auto waking = observeWake([&controller] { controller.cameBack(); });
    controller.startTimer();
    window.show();
    QTimer::singleShot(0, &controller, &MainWindowController::refresh);
    return QApplication::exec();
}
