#include "base/files.h"
#include "generated/version.h"
#include "platform/appearance/colorscheme.h"
#include "platform/folders/directories.h"
#include "platform/log/systemlog.h"
#include "platform/session/detachedprogram.h"
#include "platform/session/widgetservice.h"
#include "preferences/launcharguments.h"
#include "theme/applicationicon.h"
#include "widgets/widgetboard.h"

#include <QApplication>
#include <QDesktopServices>
#include <QLockFile>
#include <QStandardPaths>
#include <QStyleFactory>
#include <QUrl>

#include <fmt/format.h>

#include <algorithm>

namespace {

using namespace ellwynd;

constexpr std::string_view inFrontOption = "--in-front";

constexpr std::string_view usage =
    "Usage: ellwynd-widget [-Key value]... [--in-front]\n\n"
    "Shows the counts of flagged students on the desktop.\n\n"
    "  -Key value   sets a preference for this run\n"
    "  --in-front   shows the widgets in front of other windows until one of those is used\n"
    "  --help       shows this text\n"
    "  --version    shows the version\n\n"
    "The window system's own options, such as -platform, are accepted too.\n";

/// Opens a link of the program or, if it is empty, only the program: the one beside this one or, if
/// there is none, the one that the desktop opens links with. Returns an error message; absent on
/// success.
std::optional<std::string> openProgram(const QString &link) {
    const QString program = QApplication::applicationDirPath() + QStringLiteral("/ellwynd");
    const QStringList links = link.isEmpty() ? QStringList() : QStringList(link);
    const auto openLink = [&link] {
        return !link.isEmpty() && QDesktopServices::openUrl(QUrl(link));
    };
    // On Wayland a window comes to the front only with a token, which Qt passes on with a link.
    const bool isInstalled =
        !QStandardPaths::locate(
             QStandardPaths::ApplicationsLocation, QStringLiteral("com.varnok.Ellwynd.desktop"))
             .isEmpty();
    const bool isWayland = QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
    if (isInstalled && isWayland && openLink())
        return std::nullopt;
    const auto failure = startDetached(program, links);
    return failure && openLink() ? std::nullopt : failure;
}

/// Asks the widgets that are running to come to the front, and reports what they answered.
int showRunning() {
    const auto report = [](widgetService::Answer answer) {
        fmt::print(
            stderr, "The widgets are already running{}.\n",
            answer == widgetService::Answer::silent ? ", but do not answer" : "");
        QApplication::exit(answer == widgetService::Answer::silent ? 1 : 0);
    };
    QMetaObject::invokeMethod(
        qApp, [report] { widgetService::show(report); }, Qt::QueuedConnection);
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv) {
    installSystemLog();
    // Before QApplication removes its own options.
    const LaunchArguments arguments =
        parseLaunchArguments(std::vector<std::string>(argv + 1, argv + argc));

    if (const auto answer =
            answerWithoutWindow(arguments, usage, fmt::format("ellwynd-widget {}", version))) {
        fmt::print("{}", *answer);
        return 0;
    }

    QApplication application(argc, argv);
    const LaunchArguments remaining =
        parseLaunchArguments(std::vector<std::string>(argv + 1, argv + argc));
    const auto stray = std::ranges::find_if(
        remaining.rest, [](const std::string &word) { return word != inFrontOption; });
    if (stray != remaining.rest.end()) {
        fmt::print(
            stderr,
            "ellwynd-widget: \"{}\" is no \"-Key value\" pair.\nTry \"man ellwynd-widget\".\n",
            *stray);
        return 2;
    }
    QApplication::setApplicationName(QStringLiteral("Ellwynd Widgets"));
    QApplication::setDesktopFileName(QStringLiteral("com.varnok.Ellwynd.Widget"));
    QApplication::setWindowIcon(applicationIcon());
    QApplication::setQuitOnLastWindowClosed(false);
    const bool isDarkWithoutPreference = desktopPrefersDark();
    const bool desktopIsDark = colorScheme::isDark().value_or(isDarkWithoutPreference);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));

    const std::filesystem::path stateFile = directories::state() / "Widgets.json";
    files::createParentFolder(stateFile);
    // Two processes would show every widget twice and overwrite each other's state.
    QLockFile running(QString::fromStdString((directories::state() / "Widgets.running").string()));
    running.setStaleLockTime(0);
    if (!running.tryLock(0) && running.error() == QLockFile::LockFailedError)
        return showRunning();

    UserDefaults defaults(directories::config() / "Preferences.json", arguments.domain);
    defaults.watch();
    SnapshotSource source(directories::widgetContainer());
    WidgetBoard board(source, defaults, stateFile, desktopIsDark, openProgram);
    const auto followingDesktop =
        colorScheme::observe([&board, isDarkWithoutPreference](std::optional<bool> dark) {
            board.setDesktopIsDark(dark.value_or(isDarkWithoutPreference));
        });
    QObject::connect(&board, &WidgetBoard::quitRequested, &application, &QApplication::quit);
    const auto serving = widgetService::serve([&board] { return board.showInFront(); });
    board.show();
    if (!remaining.rest.empty())
        board.showInFront();
    return QApplication::exec();
}
