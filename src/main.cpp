#include "app/shell/appdelegate.h"
#include "app/shell/deeplink.h"
#include "app/shell/startupcleanup.h"
#include "application.h"
#include "base/endprocess.h"
#include "base/heap.h"
#include "base/log.h"
#include "generated/version.h"
#include "platform/appearance/colorscheme.h"
#include "platform/folders/directories.h"
#include "platform/log/systemlog.h"
#include "platform/notifications/usernotifications.h"
#include "platform/secrets/secretstore.h"
#include "platform/session/activation.h"
#include "platform/session/applicationservice.h"
#include "platform/session/detachedprogram.h"
#include "platform/session/statusarea.h"
#include "platform/session/widgettimelines.h"
#include "preferences/launcharguments.h"
#include "preferences/userdefaults.h"
#include "theme/applicationicon.h"
#include "theme/visualstyle.h"

#include <QApplication>

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>

namespace {

using namespace ellwynd;

constexpr Log logger{"settings"};
/// How long the desktop may take at login to show status items.
constexpr std::chrono::seconds statusAreaTime{10};

constexpr std::string_view usage = "Usage: ellwynd [-Key value]... [LINK]\n\n"
                                   "Shows which students of your Canvas courses need attention.\n\n"
                                   "  -Key value   sets a preference for this run\n"
                                   "  LINK         opens a course or a term\n"
                                   "  --help       shows this text\n"
                                   "  --version    shows the version\n\n"
                                   "The window system's own options, such as -platform, are "
                                   "accepted too. \"man ellwynd\" has more.\n";

/// The links on the command line once QApplication has removed its own options from it; absent if
/// anything but links and launch arguments is left, which is reported on standard error.
/// @param before the launch arguments parsed before QApplication was created; the remaining ones
///         are added.
std::optional<QStringList> linksOf(LaunchArguments &before, int argc, char **argv) {
    LaunchArguments remaining =
        parseLaunchArguments(std::vector<std::string>(argv + 1, argv + argc));
    before.domain.merge(remaining.domain);
    const auto stray = std::ranges::find_if_not(remaining.rest, looksLikeLink);
    if (stray != remaining.rest.end()) {
        fmt::print(
            stderr,
            "ellwynd: \"{}\" is neither a link nor a \"-Key value\" pair.\nTry \"man ellwynd\".\n",
            *stray);
        return std::nullopt;
    }
    QStringList links;
    for (const std::string &word : remaining.rest)
        links << QString::fromStdString(word);
    return links;
}

ApplicationEnvironment environment(PreferenceMap launchArguments) {
    const std::filesystem::path preferencesFile = directories::config() / "Preferences.json";
    // Fix the mode for this process: the stores and the data source depend on it, and only a
    // relaunch switches it.
    launchArguments.try_emplace(
        std::string(preferences::sampleData.name),
        UserDefaults(preferencesFile, {}).value(preferences::sampleData));
    return {
        .launchArguments = std::move(launchArguments),
        .preferencesFile = preferencesFile,
        .data = directories::data(),
        .state = directories::state(),
        .widgetContainer = directories::widgetContainer(),
        .secrets = makeSecretStore(),
        .notifications = makeUserNotifications(),
        .reloadWidgets = widgetTimelines::reloadAll,
        .desktopIsDark = colorScheme::isDark().value_or(desktopPrefersDark()),
        .isDarkWithoutPreference = desktopPrefersDark(),
        // Resolve the path now: the file may be replaced while the program runs.
        .newInstance = [program = QApplication::applicationFilePath()] {
            return startDetached(program);
        }};
}

/// Whether the program starts without its window, if there is a status area.
bool startsInBackground(const PreferenceMap &launchArguments) {
    const UserDefaults defaults(directories::config() / "Preferences.json", launchArguments);
    return defaults.value(preferences::keepRunningInBackground) &&
        defaults.value(preferences::startInBackground);
}

/// The teacher who starts the program from a menu does not see standard error.
void reportUnanswered() {
    fmt::print(stderr, "ellwynd: Ellwynd is running already, but does not answer.\n");
    const auto failure = postAndWait(
        {.identifier = "unanswered",
         .title = "Ellwynd does not answer",
         .body = "It is running already, but could not be opened. End its process, or log out and "
                 "in again, then open it once more."});
    if (failure)
        logger.error(fmt::format("Couldn't post a notice: {}", *failure));
}

int run(int argc, char **argv) {
    installSystemLog();
    // Read these before QApplication removes its own options and consumes the activation token.
    LaunchArguments arguments =
        parseLaunchArguments(std::vector<std::string>(argv + 1, argv + argc));
    if (const auto answer =
            answerWithoutWindow(arguments, usage, fmt::format("ellwynd {}", version))) {
        fmt::print("{}", *answer);
        return 0;
    }
    const QString activationToken = activationTokenOfStart();

    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Ellwynd"));
    QApplication::setDesktopFileName(QStringLiteral("com.varnok.Ellwynd"));
    QApplication::setWindowIcon(applicationIcon());
    const auto links = linksOf(arguments, argc, argv);
    if (!links)
        return 2;

    if (links->isEmpty() && startsInBackground(arguments.domain))
        waitForStatusArea(statusAreaTime);
    const auto service = makeApplicationService();
    switch (service->start(*links, activationToken)) {
    case ApplicationService::Outcome::first:
        break;
    case ApplicationService::Outcome::forwarded:
        if (!arguments.domain.empty())
            fmt::print(
                stderr,
                "ellwynd: Ellwynd is running already; \"-Key value\" pairs take effect "
                "only when it starts.\n");
        return 0;
    case ApplicationService::Outcome::unanswered:
        reportUnanswered();
        return 1;
    }

    removeResidualCacheFiles(directories::caches());
    Application program(environment(std::move(arguments.domain)), *service);
    program.followDesktop();
    program.launch(*links);
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv) {
    ellwynd::returnLargeBlocks();
    ellwynd::endProcess(run(argc, argv));
}
