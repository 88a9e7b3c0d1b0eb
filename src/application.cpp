#include "application.h"

#include "app/mainwindowcontroller.h"
#include "app/shell/appdelegate.h"
#include "app/sync/syncservice.h"
#include "app/updates/updater.h"
#include "canvas/connectioncheck.h"
#include "generated/version.h"
#include "net/reachability.h"
#include "platform/appearance/colorscheme.h"
#include "platform/notifications/usernotifications.h"
#include "platform/session/applicationservice.h"
#include "platform/session/wake.h"
#include "ui/mainwindow/mainwindow.h"
#include "ui/mainwindow/shellalerts.h"
#include "ui/mainwindow/statusitem.h"
#include "ui/support/appearance.h"

#include <QApplication>

namespace ellwynd {

namespace {

bool isActive() {
    return QGuiApplication::applicationState() == Qt::ApplicationActive;
}

} // namespace

struct Application::Objects {
    Objects(ApplicationEnvironment from, ApplicationService &service)
        : environment(std::move(from)),
          defaults(environment.preferencesFile, environment.launchArguments),
          appearance(settings, environment.desktopIsDark),
          tokens(environment.secrets),
          connector(defaults, tokens, session, environment.clock),
          connection(defaults, tokens, session),
          stores(defaults, environment.data, environment.clock, startThread),
          sync(defaults, trends, environment.state / "SyncedSettings.json"),
          notices(defaults, *environment.notifications, isActive),
          widgets(environment.widgetContainer, environment.reloadWidgets),
          controller(
              defaults, connector, stores, trends, {.widgets = widgets, .notices = &notices},
              environment.clock, environment.elapsed),
          shell(defaults, controller, service, updater, environment.newInstance),
          window(
              controller, defaults, stores, connection, sync, *environment.notifications,
              appearance) {}

    ApplicationEnvironment environment;
    UserDefaults defaults;
    Settings settings{defaults};
    Appearance appearance;
    CanvasSession session;
    AsyncTokenStore tokens;
    Connector connector;
    ConnectionCheck connection;
    Stores stores;
    TrendSync trends{defaults};
    SyncService sync;
    MovementNotifier notices;
    WidgetSnapshotWriter widgets;
    MainWindowController controller;
    AppcastFeed feed{defaults, feedURL};
    Updater updater{defaults, feed, buildNumber};
    AppDelegate shell;
    MainWindow window;
    ShellAlerts alerts{shell, updater, &window};
    StatusItem statusItem{controller.dashboard(), defaults};
    std::shared_ptr<void> observingColors;
    std::shared_ptr<void> observingWake;
    std::shared_ptr<void> observingNetwork;
};

Application::Application(ApplicationEnvironment environment, ApplicationService &service)
    : objects(std::make_unique<Objects>(std::move(environment), service)) {
    Objects &o = *objects;
    QObject::connect(&o.shell, &AppDelegate::activationRequested, &o.window, &MainWindow::activate);
    QObject::connect(
        &o.shell, &AppDelegate::terminationRequested, qApp, &QCoreApplication::quit,
        Qt::QueuedConnection);
    QObject::connect(&o.updater, &Updater::updateDidAppear, &o.window, &MainWindow::showUpdate);
    QObject::connect(
        &o.updater, &Updater::updateDidDisappear, &o.window, [&o] { o.window.showUpdate({}); });
    QObject::connect(
        &o.notices, &MovementNotifier::openRequested, &o.shell,
        [&o](std::optional<std::int64_t> courseID) { o.shell.openNotice(courseID); });
    QObject::connect(
        &o.window, &MainWindow::sampleSwitchRequested, &o.alerts, &ShellAlerts::switchSampleMode);
    QObject::connect(
        &o.window, &MainWindow::updateCheckRequested, &o.updater, &Updater::checkForUpdates);
    o.window.setUpdateChecksAvailable(o.updater.mayCheck());
    const auto keepRunning = [&o] { o.window.setKeepsRunning(o.statusItem.isShown()); };
    QObject::connect(&o.statusItem, &StatusItem::isShownDidChange, &o.window, keepRunning);
    keepRunning();
    QObject::connect(
        &o.statusItem, &StatusItem::windowRequested, &o.window, [&o] { o.window.activate({}); });
    QObject::connect(
        &o.statusItem, &StatusItem::refreshRequested, &o.controller,
        &MainWindowController::refresh);
    const auto quit = [&o] {
        o.window.setKeepsRunning(false);
        QCoreApplication::quit();
    };
    QObject::connect(&o.statusItem, &StatusItem::quitRequested, &o.window, quit);
    QObject::connect(&o.window, &MainWindow::quitRequested, &o.window, quit);
}

Application::~Application() = default;

void Application::launch(const QStringList &links) {
    const bool inBackground = objects->statusItem.isShown() && links.isEmpty() &&
        objects->defaults.value(preferences::startInBackground);
    if (!inBackground)
        objects->window.show();
    QMetaObject::invokeMethod(
        &objects->shell,
        [this, links] {
            objects->shell.launch(links);
            if (objects->window.isVisible())
                objects->window.showWelcomeIfDue();
        },
        Qt::QueuedConnection);
}

void Application::followDesktop() {
    Objects &o = *objects;
    o.defaults.watch();
    o.observingColors = colorScheme::observe([&o](std::optional<bool> dark) {
        o.appearance.setDesktopIsDark(dark.value_or(o.environment.isDarkWithoutPreference));
    });
    o.observingWake = observeWake([&o] {
        o.controller.computerDidWake();
        o.sync.scan();
    });
    o.observingNetwork = observeReachability([&o] { o.controller.networkDidReturn(); });
    QObject::connect(
        qGuiApp, &QGuiApplication::applicationStateChanged, &o.controller,
        [&o](Qt::ApplicationState state) {
            o.controller.setActive(state == Qt::ApplicationActive);
            if (state == Qt::ApplicationActive)
                o.sync.scan();
        });
    o.controller.startTimer();
}

UserDefaults &Application::defaults() {
    return objects->defaults;
}

Appearance &Application::appearance() {
    return objects->appearance;
}

MainWindowController &Application::controller() {
    return objects->controller;
}

MainWindow &Application::window() {
    return objects->window;
}

} // namespace ellwynd
