#include "application.h"

#include "app/mainwindowcontroller.h"
#include "app/shell/appdelegate.h"
#include "app/sync/syncservice.h"
#include "app/updates/updater.h"
#include "base/heap.h"
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
#include "ui/support/fontpreparation.h"

#include <QApplication>
#include <QThreadPool>
#include <QTimer>

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
          shell(defaults, controller, service, updater, environment.newInstance) {}

    /// Makes the window when it is first needed: a program that starts in the background may never
    /// show it.
    [[nodiscard]] MainWindow &window();
    /// Ends the program, also while it keeps running without its window.
    void quit() const;

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
    StatusItem statusItem{controller.dashboard(), defaults};
    std::shared_ptr<void> observingColors;
    std::shared_ptr<void> observingWake;
    std::shared_ptr<void> observingNetwork;
    std::unique_ptr<MainWindow> mainWindow;
};

MainWindow &Application::Objects::window() {
    if (mainWindow != nullptr)
        return *mainWindow;
    mainWindow = std::make_unique<MainWindow>(
        controller, defaults, stores, connection, sync, *environment.notifications, appearance);
    MainWindow *made = mainWindow.get();
    auto *alerts = new ShellAlerts(shell, updater, made);
    QObject::connect(&updater, &Updater::updateDidAppear, made, &MainWindow::showUpdate);
    QObject::connect(
        &updater, &Updater::updateDidDisappear, made, [made] { made->showUpdate({}); });
    QObject::connect(
        made, &MainWindow::sampleSwitchRequested, alerts, &ShellAlerts::switchSampleMode);
    QObject::connect(made, &MainWindow::updateCheckRequested, &updater, &Updater::checkForUpdates);
    made->setUpdateChecksAvailable(updater.mayCheck());
    // Announced once the window is visible.
    QMetaObject::invokeMethod(
        made,
        [this, made] {
            if (const auto update = updater.pendingUpdate(); update && updater.mayCheck())
                made->showUpdate(QString::fromStdString(update->version));
        },
        Qt::QueuedConnection);
    const auto keepRunning = [this] { mainWindow->setKeepsRunning(statusItem.isShown()); };
    QObject::connect(&statusItem, &StatusItem::isShownDidChange, made, keepRunning);
    keepRunning();
    QObject::connect(made, &MainWindow::quitRequested, made, [this] { quit(); });
    return *mainWindow;
}

void Application::Objects::quit() const {
    if (mainWindow != nullptr)
        mainWindow->setKeepsRunning(false);
    QCoreApplication::quit();
}

Application::Application(ApplicationEnvironment environment, ApplicationService &service)
    : objects(std::make_unique<Objects>(std::move(environment), service)) {
    Objects &o = *objects;
    QObject::connect(
        &o.shell, &AppDelegate::activationRequested, &o.shell,
        [&o](const QString &activationToken) { o.window().activate(activationToken); });
    QObject::connect(
        &o.shell, &AppDelegate::terminationRequested, &o.shell, [&o] { o.quit(); },
        Qt::QueuedConnection);
    // An error in the background is shown too.
    QObject::connect(
        &o.controller, &MainWindowController::errorDidOccur, &o.shell,
        [&o](const CanvasError &error) {
            if (o.mainWindow == nullptr)
                o.window().showError(error);
        });
    QObject::connect(
        &o.notices, &MovementNotifier::openRequested, &o.shell,
        [&o](std::optional<std::int64_t> courseID) { o.shell.openNotice(courseID); });
    QObject::connect(
        &o.statusItem, &StatusItem::windowRequested, &o.shell, [&o] { o.window().activate({}); });
    QObject::connect(
        &o.statusItem, &StatusItem::refreshRequested, &o.controller,
        &MainWindowController::refresh);
    QObject::connect(&o.statusItem, &StatusItem::quitRequested, &o.shell, [&o] { o.quit(); });
    // A pass replaces the records of all courses. Otherwise the free memory that it leaves between
    // those that remain would add up over a day of passes. A moment later the old records have been
    // released, and what the pass changed has been saved.
    static constexpr std::chrono::milliseconds afterPass{300};
    QObject::connect(&o.controller, &MainWindowController::passDidEnd, &o.controller, [&o] {
        QTimer::singleShot(afterPass, &o.controller, [] {
            QThreadPool::globalInstance()->start(returnFreeMemory);
        });
    });
}

Application::~Application() = default;

void Application::launch(const QStringList &links) {
    const bool inBackground = objects->statusItem.isShown() && links.isEmpty() &&
        objects->defaults.value(preferences::startInBackground);
    const auto later = [this](auto step) {
        QMetaObject::invokeMethod(&objects->shell, step, Qt::QueuedConnection);
    };
    if (!inBackground) {
        // Finding the first fonts takes about as long as making the window.
        later([this] { findFirstFonts(objects->appearance); });
        later([this] { static_cast<void>(objects->window()); });
        later([this] { objects->window().show(); });
    }
    later([this, links] {
        objects->shell.launch(links);
        if (objects->mainWindow != nullptr && objects->mainWindow->isVisible())
            objects->mainWindow->showWelcomeIfDue();
    });
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
    // Asking the system for the network's state takes longer than the first picture may wait.
    constexpr std::chrono::milliseconds afterStart{100};
    QTimer::singleShot(afterStart, &o.shell, [&o] {
        o.observingNetwork = observeReachability([&o] { o.controller.networkDidReturn(); });
    });
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
    return objects->window();
}

} // namespace ellwynd
