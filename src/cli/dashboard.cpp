#include "app/dashboard/dashboardtexts.h"
#include "app/dashboard/passcontroller.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"
#include "cli/table.h"
#include "cli/terminaltext.h"
#include "platform/folders/directories.h"
#include "platform/notifications/usernotifications.h"
#include "platform/session/widgettimelines.h"

#include <QEventLoop>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace ellwynd::cli {

namespace {

JSON cardDocument(const DashboardCourseCard &card) {
    return {
        {"courseID", card.courseID},
        {"name", card.name},
        {"atRisk", card.levels.atRisk},
        {"concern", card.levels.concern},
        {"watch", card.levels.watch},
        {"total", card.total},
        {"slipped", card.slipped},
        {"newlyFlagged", card.newlyFlagged},
        {"improved", card.improved},
        {"awaitingFollowUp", card.awaitingFollowUp},
        {"trend", card.trend},
        {"mostMissed",
         card.mostMissed
             ? JSON{{"title", card.mostMissed->title}, {"count", card.mostMissed->count}}
             : JSON(nullptr)}};
}

template<class T>
JSON orNull(const std::optional<T> &value) {
    return value ? JSON(*value) : JSON(nullptr);
}

JSON dashboardDocument(const Dashboard &dashboard) {
    JSON menu = JSON::array();
    for (const TermMenuItem &item : termMenu(dashboard))
        menu.push_back({{"title", item.title}, {"tag", item.tag}, {"selected", item.selected}});
    JSON terms = JSON::array();
    for (const DashboardTerm &term : dashboard.model().terms) {
        JSON cards = JSON::array();
        for (const DashboardCourseCard &card : term.cards)
            cards.push_back(cardDocument(card));
        terms.push_back({{"id", term.id}, {"title", term.title}, {"cards", std::move(cards)}});
    }
    const DashboardTerm *shown = dashboard.shownTerm();
    return {
        {"updatedAt",
         formatInstant(shown != nullptr ? shown->updatedAt : dashboard.model().updatedAt)},
        {"automaticTermID", orNull(dashboard.model().automaticTermID)},
        {"termMenu", std::move(menu)},
        {"shownTermID", orNull(dashboard.shownTermID())},
        {"headline", shown != nullptr ? JSON(headline(*shown)) : JSON(nullptr)},
        {"movementLine", shown != nullptr ? JSON(movementLine(*shown)) : JSON(nullptr)},
        {"waitLine", orNull(waitLine(dashboard))},
        {"stamp", shown != nullptr ? JSON(stamp(dashboard)) : JSON(nullptr)},
        {"terms", std::move(terms)}};
}

/// @param latest the course scored last; empty before the first.
std::string progressText(const PassProgress &pass, const std::string &latest) {
    if (latest.empty())
        return fmt::format("Scored {} of {} courses…", pass.done, pass.total);
    return fmt::format("Scored {} of {}: {}…", pass.done, pass.total, latest);
}

/// @param columns as in `Table::text`.
std::string dashboardText(const Dashboard &dashboard, bool withIDs, std::size_t columns) {
    const DashboardTerm *shown = dashboard.shownTerm();
    if (shown == nullptr)
        return *waitLine(dashboard) + "\n";
    std::string text = fmt::format(
        "{}\n{}\n{} — {}\n\n", terminalText(shown->title), headline(*shown), movementLine(*shown),
        stamp(dashboard));
    Table table(
        {{"Course"},
         {"Flagged", true},
         {"Levels"},
         {"Moved"},
         {"Follow-up", true},
         {"Most missed"}});
    std::vector<std::int64_t> ids;
    std::vector<std::string> names;
    for (const DashboardCourseCard &card : shown->cards) {
        ids.push_back(card.courseID);
        names.push_back(card.name);
        const std::string levels = levelsText(card.levels, ", ");
        table.add(
            {card.name, fmt::format("{} of {}", card.flagged(), card.total),
             levels.empty() ? "All OK" : levels, movementMarks(card),
             card.awaitingFollowUp > 0 ? std::to_string(card.awaitingFollowUp) : "",
             card.mostMissed
                 ? fmt::format("{} ({})", card.mostMissed->title, card.mostMissed->count)
                 : ""});
    }
    table.addIDs(ids, names, withIDs);
    return text + table.text(columns);
}

} // namespace

/// Waits until the pass's notice has been sent: calls are answered in order, and posting a notice
/// queries the authorization status once itself.
void waitForNotices(UserNotifications &notifications) {
    for (int answers = 0; answers < 2; ++answers) {
        QEventLoop loop;
        notifications.authorizationStatus([&loop](auto) {
            QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
        });
        loop.exec();
    }
}

static int runDashboard(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "dashboard", "Score every course of the nearby terms.");
    line.flag("notify", "Post the notice of students who newly do worse.");
    line.flag("ids", "Print the id of every course.");
    if (!line.parse(words))
        return done;
    const auto source = context.connect();
    const auto notifications = makeUserNotifications();
    MovementNotifier notices(context.defaults(), *notifications, [] { return false; });
    WidgetSnapshotWriter widgets(directories::widgetContainer(), widgetTimelines::reloadAll);
    CourseList courses(context.defaults(), context.now);
    RosterCache cache;
    PassController passes(
        context.defaults(), courses, context.stores(), context.trends(), cache,
        {.widgets = widgets, .notices = line.has("notify") ? &notices : nullptr}, context.now);
    const Dashboard &dashboard = passes.dashboard();
    courses.set(fetchCourses(context, *source));

    bool complete = false;
    QEventLoop loop;
    QObject::connect(&passes, &PassController::passDidEnd, &loop, [&](const PassResult &result) {
        complete = result.complete;
        loop.quit();
    });
    // The names are on standard error only, and only when that is a terminal.
    std::string latest;
    const auto showProgress = [&] {
        const PassProgress &pass = dashboard.progress();
        if (pass.running)
            context.progress().begin(progressText(pass, latest));
    };
    QObject::connect(&dashboard, &Dashboard::dashboardModelDidChange, &loop, showProgress);
    QObject::connect(&passes, &PassController::courseDidScore, &loop, [&](std::int64_t id) {
        latest = displayName(cache.find(id)->course);
        showProgress();
    });
    // Queued, since a pass over the sample college ends before `start` returns.
    QMetaObject::invokeMethod(
        &passes, [&] { passes.start(source); }, Qt::QueuedConnection);
    loop.exec();
    context.progress().end();
    if (line.has("notify"))
        waitForNotices(*notifications);
    std::vector<const ScoredCourse *> scored;
    for (const auto &[id, course] : cache.entries)
        scored.push_back(course.get());
    printNotes(context, scored);
    line.print(
        line.wantsJSON() ? printed(dashboardDocument(dashboard))
                         : dashboardText(dashboard, line.has("ids"), line.columns()));
    return complete ? done : failed;
}

Command dashboardCommand() {
    return {"dashboard", "score every course of the nearby terms", runDashboard};
}

} // namespace ellwynd::cli
