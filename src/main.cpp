#include "app/mainwindowcontroller.h"
#include "app/shell/appdelegate.h"
#include "app/shell/applicationservice.h"
#include "app/shell/deeplink.h"
#include "app/shell/startupcleanup.h"
#include "app/sync/syncservice.h"
#include "app/updates/updater.h"
#include "base/files.h"
#include "canvas/connectioncheck.h"
#include "generated/version.h"
#include "platform/appearance/colorscheme.h"
#include "platform/notifications/usernotifications.h"
#include "platform/session/wake.h"
#include "platform/session/widgettimelines.h"
#include "preferences/launcharguments.h"
#include "theme/applicationicon.h"
#include "ui/mainwindow.h"
#include "ui/shellalerts.h"
#include "ui/support/appearance.h"
#include "ui/support/convert.h"

#include <QApplication>

#include <fmt/format.h>

#include <algorithm>

int main(int argc, char **argv) {
    using namespace ellwynd;
    // Before the application takes its own options away, and the token for its first window.
    LaunchArguments arguments =
        parseLaunchArguments(std::vector<std::string>(argv + 1, argv + argc));
    const QString activationToken = activationTokenOfStart();

    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Ellwynd"));
    QApplication::setDesktopFileName(QStringLiteral("com.varnok.Ellwynd"));
    QApplication::setWindowIcon(applicationIcon());
    // Now, since the file may be replaced while the program runs.
    const QString program = QApplication::applicationFilePath();

    LaunchArguments remaining =
        parseLaunchArguments(std::vector<std::string>(argv + 1, argv + argc));
    arguments.domain.merge(remaining.domain);
    const auto stray = std::ranges::find_if_not(remaining.rest, looksLikeLink);
    if (stray != remaining.rest.end()) {
        fmt::print(
            stderr,
            "ellwynd: \"{}\" is no link and no \"-Key value\" pair.\nTry \"man ellwynd\".\n",
            *stray);
        return 2;
    }
    QStringList links;
    for (const std::string &word : remaining.rest)
        links << qstring(word);

    ApplicationService service;
    switch (service.start(links, activationToken)) {
    case ApplicationService::Outcome::first:
        break;
    case ApplicationService::Outcome::handedOver:
        if (!arguments.domain.empty())
            fmt::print(
                stderr,
                "ellwynd: Ellwynd is running already; \"-Key value\" pairs hold for a new "
                "start only.\n");
        return 0;
    case ApplicationService::Outcome::unanswered:
        fmt::print(stderr, "ellwynd: Ellwynd is running already, but does not answer.\n");
        return 1;
    }

    removeResidualCacheFiles(directories::caches());
    const std::filesystem::path preferencesFile = directories::config() / "Preferences.json";
    // The mode of this run: memories and data source are made for it, and only a relaunch switches.
    arguments.domain.try_emplace(
        std::string(preferences::sampleData.name),
        UserDefaults(preferencesFile, {}).value(preferences::sampleData));
    UserDefaults defaults(preferencesFile, arguments.domain);
    defaults.watch();
    Settings settings(defaults);
    Appearance appearance(settings, colorScheme::isDark().value_or(desktopPrefersDark()));
    const auto followingDesktop =
        colorScheme::observe([&appearance](bool dark) { appearance.setDesktopIsDark(dark); });
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
    AppcastFeed feed(defaults, feedURL);
    Updater updater(defaults, feed, buildNumber);
    AppDelegate shell(
        defaults, controller, service, updater, [&] { return startDetached(program); });
    MainWindow window(controller, defaults, stores, connection, sync, notifications, appearance);
    ShellAlerts alerts(shell, updater, &window);

    // Of what another computer has set, only another Canvas is a reason to read everything again.
    QObject::connect(
        &sync, &SyncService::settingsDidSyncExternally, &controller,
        [&, address = defaults.value(preferences::canvasBaseURL)]() mutable {
            const std::string now = defaults.value(preferences::canvasBaseURL);
            if (std::exchange(address, now) != now)
                controller.refresh();
        });
    QObject::connect(&shell, &AppDelegate::shouldActivate, &window, &MainWindow::activate);
    QObject::connect(
        &shell, &AppDelegate::shouldTerminate, &application, &QApplication::quit,
        Qt::QueuedConnection);
    QObject::connect(&updater, &Updater::updateFound, &window, &MainWindow::showUpdate);
    QObject::connect(
        &updater, &Updater::updateWithdrawn, &window, [&window] { window.showUpdate({}); });
    QObject::connect(
        &notices, &MovementNotifier::noticeClicked, &shell,
        [&shell](std::optional<std::int64_t> courseID) { shell.openNotice(courseID); });
    QObject::connect(
        &application, &QGuiApplication::applicationStateChanged, &controller,
        [&controller](Qt::ApplicationState state) {
            if (state == Qt::ApplicationActive)
                controller.refreshIfStale();
        });
    const auto waking = observeWake([&controller] { controller.refreshIfStale(); });
    controller.startTimer();
    window.offerUpdates(updater.mayCheck());
    QObject::connect(
        &window, &MainWindow::sampleSwitchRequested, &alerts, &ShellAlerts::switchSampleMode);
    QObject::connect(
        &window, &MainWindow::updateCheckRequested, &updater, &Updater::checkForUpdates);
    window.show();
    QMetaObject::invokeMethod(
        &shell,
        [&] {
            shell.launch(links);
            window.showWelcomeIfDue();
        },
        Qt::QueuedConnection);
    return QApplication::exec();
}
