#include "base/files.h"
#include "generated/version.h"
#include "platform/appearance/colorscheme.h"
#include "platform/folders/directories.h"
#include "platform/log/systemlog.h"
#include "preferences/launcharguments.h"
#include "theme/applicationicon.h"
#include "widgets/widgetboard.h"

#include <QApplication>
#include <QDesktopServices>
#include <QLockFile>
#include <QStyleFactory>
#include <QUrl>

#include <fmt/format.h>

int main(int argc, char **argv) {
    using namespace ellwynd;
    installSystemLog();
    // Before QApplication removes its own options.
    const LaunchArguments arguments =
        parseLaunchArguments(std::vector<std::string>(argv + 1, argv + argc));

    if (const auto answer = answerWithoutWindow(
            arguments,
            "Usage: ellwynd-widget [-Key value]...\n\n"
            "Shows the counts of flagged students on the desktop.\n\n"
            "  -Key value   sets a preference for this run\n"
            "  --help       shows this text\n"
            "  --version    shows the version\n\n"
            "The window system's own options, such as -platform, are accepted too.\n",
            fmt::format("ellwynd-widget {}", version))) {
        fmt::print("{}", *answer);
        return 0;
    }

    QApplication application(argc, argv);
    const LaunchArguments remaining =
        parseLaunchArguments(std::vector<std::string>(argv + 1, argv + argc));
    if (!remaining.rest.empty()) {
        fmt::print(
            stderr,
            "ellwynd-widget: \"{}\" is no \"-Key value\" pair.\nTry \"man ellwynd-widget\".\n",
            remaining.rest.front());
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
    if (!running.tryLock(0) && running.error() == QLockFile::LockFailedError) {
        fmt::print(stderr, "The widgets are already running.\n");
        return 0;
    }

    UserDefaults defaults(directories::config() / "Preferences.json", arguments.domain);
    defaults.watch();
    SnapshotSource source(directories::widgetContainer());
    WidgetBoard board(source, defaults, stateFile, desktopIsDark, [](const QString &link) {
        QDesktopServices::openUrl(QUrl(link));
    });
    const auto followingDesktop =
        colorScheme::observe([&board, isDarkWithoutPreference](std::optional<bool> dark) {
            board.setDesktopIsDark(dark.value_or(isDarkWithoutPreference));
        });
    QObject::connect(&board, &WidgetBoard::quitRequested, &application, &QApplication::quit);
    board.show();
    return QApplication::exec();
}
