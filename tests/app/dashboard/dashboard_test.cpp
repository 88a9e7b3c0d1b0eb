#include "app/connectedtest.h"
#include "app/dashboard/coursesummary.h"
#include "app/dashboard/dashboardtexts.h"
#include "app/roster/visit.h"
#include "platform/cloud/foldercontents.h"
#include "platform/cloud/syncedfolder.h"
#include "support/directqueue.h"
#include "support/rosters.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using std::chrono::days;
using test::noon;
using testing::ElementsAre;

std::vector<TermGroup> twoTerms() {
    return {
        {.term = Term{.id = 2, .name = "Spring"}, .courses = {Course{.id = 21}, Course{.id = 22}}},
        {.term = Term{.id = 1, .name = "Fall"}, .courses = {Course{.id = 11}}}};
}

struct DashboardTest : testing::Test {
    test::Core core{{}, test::noonClock};
    Dashboard dashboard{core.defaults};

    [[nodiscard]] std::string wait() const { return waitLine(dashboard).value_or("cards"); }
};

TEST_F(DashboardTest, ShowsWhatItWaitsFor) {
    constexpr auto nothing =
        "Your courses appear here once they load — or pick one from the sidebar.";
    EXPECT_EQ(wait(), nothing);
    dashboard.prepareTerms(twoTerms(), Term{.id = 2, .name = "Spring"});
    EXPECT_EQ(wait(), nothing);
    dashboard.beginPass();
    EXPECT_EQ(wait(), "Scoring Spring — 2 courses to go…");
    dashboard.courseScored(2);
    EXPECT_EQ(wait(), "Scoring Spring — 1 course to go…");
    dashboard.courseScored(2);
    EXPECT_EQ(wait(), "Scoring your courses — 2 of 3…");
    dashboard.termScored({.id = 2, .title = "Spring", .updatedAt = noon});
    EXPECT_EQ(wait(), "cards");
    EXPECT_EQ(stamp(dashboard), "updated 07:00:00 · still scoring — 2 of 3…");
    dashboard.selectTerm(1);
    EXPECT_EQ(wait(), "Scoring Fall — 1 course to go…  Other terms are ready in the menu.");
    dashboard.passFailed();
    EXPECT_EQ(wait(), "Couldn’t finish scoring — Refresh (⌘R) tries again.");
    dashboard.beginPass();
    EXPECT_FALSE(dashboard.lastPassFailed());
    EXPECT_EQ(dashboard.model().terms.size(), 1U) << "the terms of the last pass are kept";
    dashboard.termScored({.id = 1, .title = "Fall", .updatedAt = noon + days(1)});
    dashboard.passCompleted(noon + days(1));
    EXPECT_EQ(dashboard.model().updatedAt, noon + days(1));
    dashboard.clear();
    EXPECT_EQ(wait(), nothing);
}

TEST_F(DashboardTest, TheMenuBeginsWithAutomatic) {
    const auto menu = [this] { return termMenu(dashboard); };
    EXPECT_THAT(menu(), ElementsAre(TermMenuItem{"Automatic", 0, true}));
    dashboard.prepareTerms(twoTerms(), Term{.id = 1, .name = "Fall"});
    EXPECT_THAT(
        menu(),
        ElementsAre(
            TermMenuItem{"Automatic (Fall)", 0, true}, TermMenuItem{"Spring", 2, false},
            TermMenuItem{"Fall", 1, false}));
    EXPECT_EQ(dashboard.shownTermID(), 1);
    dashboard.selectTerm(2);
    EXPECT_TRUE(menu()[1].selected);
    EXPECT_EQ(dashboard.shownTermID(), 2);
    dashboard.selectTerm(77);
    EXPECT_TRUE(menu()[0].selected) << "a term that is no longer nearby";
    dashboard.prepareTerms(twoTerms(), Term{.id = 9, .name = "Long ago"});
    EXPECT_EQ(menu()[0].title, "Automatic") << "not nearby";
    EXPECT_EQ(dashboard.shownTermID(), 2) << "the newest";
    // A complete pass removes terms that are no longer nearby.
    dashboard.termScored({.id = 9, .updatedAt = noon});
    dashboard.termScored({.id = 1, .updatedAt = noon});
    dashboard.passCompleted(noon);
    EXPECT_EQ(dashboard.model().terms.size(), 1U);
}

TEST_F(DashboardTest, TextsOfATermAndACard) {
    const DashboardCourseCard quiet{.name = "Art", .total = 20};
    DashboardCourseCard busy{
        .name = "Bio",
        .levels = {.atRisk = 1, .watch = 2},
        .total = 9,
        .slipped = 1,
        .newlyFlagged = 1,
        .improved = 1,
        .awaitingFollowUp = 1,
        .mostMissed = MostMissed{"Lab 1", 4}};
    EXPECT_EQ(headline({.cards = {quiet}}), "0 flagged across 1 course");
    EXPECT_EQ(movementLine({.cards = {quiet}}), "No movement since last time.");
    EXPECT_EQ(headline({.cards = {quiet, busy}}), "3 flagged across 2 courses");
    EXPECT_EQ(
        movementLine({.cards = {quiet, busy, busy}}),
        "Since last time: 2 slipped · 2 newly flagged · 2 improved · 2 awaiting follow-up");
    EXPECT_EQ(accessibleText(quiet), "Art. All 20 students OK. Opens the course.");
    EXPECT_EQ(
        accessibleText(busy),
        "Bio. 3 students flagged: 1 at risk, 2 watch. 2 worse since last time. 1 improved. 1 "
        "awaiting follow-up. Most missed: Lab 1. Opens the course.");
    EXPECT_EQ(movementMarks(busy), "↑ 2   ↓ 1");
    EXPECT_EQ(
        mostMissedHelp(*busy.mostMissed),
        "4 students are missing this same assignment. Open the course for the full list.");
}

TEST_F(DashboardTest, TheTrendIncludesDaysOfOtherMachines) {
    test::DirectQueue queue;
    folderContents::create(core.folder.path() / "cloud");
    SyncedFolder cloud(core.folder.path() / "cloud", queue, {});
    core.defaults.set(preferences::syncSettings, true);
    core.trends.setStore(&cloud);
    core.trends.start();
    // Counts that the roster of two students cannot have are left out.
    for (const auto &[ago, count] :
         {std::pair{15, 1}, std::pair{5, -1}, std::pair{4, 3}, std::pair{3, 2}, std::pair{2, 0}})
        core.trends.publish(7, count, noon - days(ago));
    core.trends.publish(7, 99, noon);
    core.stores.history.fill(
        {test::entry(7, 1, noon - days(2), "Watch"), test::entry(7, 2, noon - days(2), "Concern"),
         test::entry(7, 1, noon - days(1), "OK")});
    const ScoredCourse course{
        .course = {.id = 7, .name = "Bio"},
        .rows = {test::row(1, "At Risk"), test::row(2, "OK")},
        .fetchedAt = noon};
    const DashboardCourseCard card =
        dashboardCard(course, movementOf(course, core.stores), {}, core.stores, core.trends);
    EXPECT_THAT(card.trend, ElementsAre(2, 2, 0, 1));
    EXPECT_EQ(card.newlyFlagged, 1);
    EXPECT_EQ(card.improved, 1);
    EXPECT_EQ(card.mostMissed, std::nullopt);
}

TEST_F(DashboardTest, ASummaryIsMadeAgainOnlyAfterAChangeOfItsCourse) {
    const auto scored = [](std::int64_t id) {
        RiskRow student = test::row(1, "At Risk");
        student.courseID = id;
        return std::make_shared<const ScoredCourse>(
            ScoredCourse{.course = {.id = id}, .rows = {student}, .fetchedAt = noon});
    };
    const SharedCourse bio = scored(7);
    const SharedCourse art = scored(8);
    core.stores.history.fill({test::entry(7, 1, noon - days(2), "Watch")});
    CourseSummaries summaries(core.stores, core.trends);
    // The list of the students is another one once it was made again.
    const auto made = [&](const SharedCourse &course, Date now) {
        return summaries.of(course, now).students.data();
    };
    const auto *ofBio = made(bio, noon);
    const auto *ofArt = made(art, noon);
    EXPECT_EQ(summaries.of(bio, noon).card.slipped, 1);
    EXPECT_EQ(made(bio, noon + std::chrono::hours(1)), ofBio);

    core.stores.contacts.noteContact(7, 1, noon);
    EXPECT_EQ(made(art, noon), ofArt) << "of another course";
    EXPECT_TRUE(summaries.of(bio, noon).students.front().outcome);
    core.stores.history.record({test::row(1, "At Risk")}, 7, noon - days(1));
    EXPECT_EQ(made(art, noon), ofArt);
    EXPECT_EQ(summaries.of(bio, noon).card.slipped, 0);
    EXPECT_EQ(summaries.of(bio, noon).card.trend.size(), 3U);
    EXPECT_EQ(summaries.of(bio, noon + days(1)).students.front().outcome->daysSince, 1)
        << "on another day";
    core.stores.history.deleteAll();
    EXPECT_EQ(summaries.of(bio, noon).card.trend.size(), 1U);
}

/// Canvas has two courses in the current term, one in the next term and one in an old term.
struct PassTest : test::ConnectedTest {
    PassTest() : ConnectedTest({{"MovementNotifications", true}}) {
        canvas.serve(
            QStringLiteral("/api/v1/courses"),
            {R"({"id":1,"name":"Art","term":{"id":9,"name":"Fall","start_at":"2026-09-01T00:00:00Z",
                 "end_at":"2026-12-20T00:00:00Z"}})",
             R"({"id":2,"name":"Bio","term":{"id":10,"name":"Winter","start_at":"2026-11-01T00:00:00Z"}})",
             R"({"id":4,"name":"Drama","term":{"id":9,"name":"Fall"}})",
             R"({"id":3,"name":"Old","term":{"id":8,"name":"Spring","start_at":"2026-01-01T00:00:00Z",
                 "end_at":"2026-05-20T00:00:00Z"}})"});
        for (const int course : {1, 2, 3, 4})
            serveScore(course, 90);
    }

    /// Serves a course with two students who have this score.
    void serveScore(int course, int score) { test::serveScores(canvas, course, score, 2); }

    void pass() {
        const std::size_t before = passes.size();
        controller.refresh();
        ASSERT_TRUE(untilPasses(before + 1));
    }

    /// Whether the widget files contain names of courses; of both or of neither.
    [[nodiscard]] bool filesHaveNames() const {
        const auto hasNames = [this](const char *file) {
            return core.folder.read(file).find("name") != std::string::npos;
        };
        const bool has = hasNames("widgets/WidgetSnapshotV2.json");
        EXPECT_EQ(hasNames("widgets/WidgetSnapshot.json"), has);
        return has;
    }

    [[nodiscard]] std::string widgets() const {
        return core.folder.read("widgets/WidgetSnapshotV2.json");
    }
};

TEST_F(PassTest, ScoresTheNearbyTermsAndWritesTheirCounts) {
    pass();
    EXPECT_THAT(passes, ElementsAre(true));
    ASSERT_EQ(controller.dashboard().model().terms.size(), 2U);
    EXPECT_EQ(controller.dashboard().model().terms[0].id, 10) << "in the order of the menu";
    EXPECT_EQ(controller.dashboard().shownTerm()->title, "Fall");
    EXPECT_EQ(controller.levels(2)->flagged(), 0);
    EXPECT_EQ(controller.levels(3), std::nullopt) << "not nearby";
    EXPECT_EQ(core.widgetReloads, 1);
    const WidgetTermSummary winter{
        .id = 10, .title = "Winter", .courses = {{.id = 2, .name = "Bio", .total = 2}}};
    const WidgetTermSummary fall{
        .id = 9,
        .title = "Fall",
        .courses = {{.id = 1, .name = "Art", .total = 2}, {.id = 4, .name = "Drama", .total = 2}}};
    const WidgetSnapshotFile counts{
        .updatedAt = noon, .automaticTermID = 9, .terms = {winter, fall}};
    EXPECT_EQ(decodeWidgetSnapshotFile(widgets()), counts);
    // A scored course is shown at once.
    controller.select(CourseSelection{1});
    EXPECT_EQ(controller.roster().state, RosterView::State::shown);

    core.defaults.set(preferences::widgetsHideCourseNames, true);
    pass();
    EXPECT_FALSE(filesHaveNames());
}

TEST_F(PassTest, CourseNamesAreHiddenAndShownAtOnce) {
    pass();
    const std::string named = widgets();
    EXPECT_TRUE(filesHaveNames());
    core.defaults.set(preferences::widgetsHideCourseNames, true);
    EXPECT_FALSE(filesHaveNames());
    core.defaults.set(preferences::widgetsHideCourseNames, false);
    EXPECT_EQ(widgets(), named);

    // The teacher's widgets do not follow the sample college.
    core.defaults.set(preferences::sampleData, true);
    core.defaults.set(preferences::widgetsHideCourseNames, true);
    EXPECT_EQ(widgets(), named);
    core.defaults.remove(preferences::sampleData.name);
    // The preference was changed while the program was not running.
    const MainWindowController next(
        core.defaults, core.connector, core.stores, core.trends, core.sinks, test::noonClock);
    EXPECT_FALSE(filesHaveNames());
    core.defaults.set(preferences::widgetsHideCourseNames, false);
    EXPECT_TRUE(filesHaveNames()) << "by the controller that has the courses";
}

TEST_F(PassTest, TheChosenTermIsScoredFirst) {
    core.defaults.set(preferences::dashboardTermID, std::int64_t{10});
    std::int64_t first = 0;
    QObject::connect(
        &controller.dashboard(), &Dashboard::dashboardModelDidChange, &controller, [&] {
            const auto &terms = controller.dashboard().model().terms;
            if (terms.size() == 1)
                first = terms[0].id;
        });
    pass();
    EXPECT_EQ(first, 10);
}

TEST_F(PassTest, ATermWithAFailedCourseIsLeftOut) {
    pass();
    // In a term other than the automatic one: the widget file omits the term.
    canvas.plan(test::coursePath(2, "enrollments"), {{.status = 404}});
    pass();
    EXPECT_FALSE(passes.back());
    EXPECT_EQ(controller.dashboard().model().terms.size(), 2U) << "the earlier cards are kept";
    EXPECT_EQ(decodeWidgetSnapshotFile(widgets())->terms.size(), 1U);
    // In the automatic term: nothing is written.
    const std::string kept = widgets();
    const int reloads = core.widgetReloads;
    for (const int failing : {1, 4}) {
        canvas.plan(test::coursePath(failing, "enrollments"), {{.status = 404}});
        pass();
        EXPECT_FALSE(passes.back());
        EXPECT_EQ(widgets(), kept) << failing;
        EXPECT_EQ(core.widgetReloads, reloads) << failing;
        EXPECT_EQ(controller.dashboard().shownTerm()->cards.size(), 2U) << failing;
    }
}

TEST_F(PassTest, AStudentIsMentionedOnceUntilTheCourseIsOpened) {
    core.stores.history.fill(
        {test::entry(1, 11, noon - days(1), "OK"), test::entry(1, 12, noon - days(1), "OK")});
    serveScore(1, 20);
    pass();
    ASSERT_EQ(core.notifications.posted.size(), 1U);
    EXPECT_EQ(core.notifications.posted[0].body, "Art");
    EXPECT_EQ(core.notifications.posted[0].courseID, 1);
    pass();
    EXPECT_EQ(core.notifications.posted.size(), 1U);
    controller.select(CourseSelection{1});
    ASSERT_TRUE(test::until([&] { return !controller.isLoading(); }));
    controller.select(DashboardSelection{});
    pass();
    EXPECT_EQ(core.notifications.posted.size(), 2U);
}

TEST_F(PassTest, NoticesAreAboutStudentsWhoGotWorseInWholeTerms) {
    struct Row {
        const char *what;
        /// The level of yesterday, and the score of today, of the students of a course.
        int course;
        const char *before;
        int score;
        bool isPosted;
        /// Whether the current term is over, so that the automatic term is not nearby.
        bool lacksAutomatic = false;
        /// A course that cannot be read.
        int failing = 0;
    };
    for (const Row &each :
         {Row{"improved", 1, "At Risk", 90, false}, Row{"unchanged", 1, "OK", 90, false},
          Row{"slipped", 4, "Watch", 20, true}, Row{"of another term", 2, "OK", 20, true},
          Row{"with the current term incomplete", 2, "OK", 20, false, false, 4},
          Row{"without an automatic term", 2, "OK", 20, true, true}}) {
        core.notifications.posted.clear();
        for (const int course : {1, 2, 4})
            serveScore(course, course == each.course ? each.score : 90);
        if (each.lacksAutomatic) {
            canvas.serve(
                QStringLiteral("/api/v1/courses"),
                {R"({"id":2,"term":{"id":10,"name":"Winter","start_at":"2026-11-01T00:00:00Z"}})"});
        }
        if (each.failing > 0)
            canvas.plan(test::coursePath(each.failing, "enrollments"), {{.status = 404}});
        core.notices.forget(each.course);
        core.stores.history.fill(
            {test::entry(each.course, each.course * 10 + 1, noon - days(1), each.before),
             test::entry(each.course, each.course * 10 + 2, noon - days(1), each.before)});
        pass();
        EXPECT_EQ(core.notifications.posted.size(), each.isPosted ? 1U : 0U) << each.what;
        EXPECT_EQ(controller.dashboard().model().automaticTermID.has_value(), !each.lacksAutomatic);
    }
}

TEST_F(PassTest, TheSampleCollegeFeedsWidgetsOnlyIfEnabled) {
    core.defaults.set(preferences::sampleData, true);
    pass();
    EXPECT_TRUE(widgets().empty());
    core.defaults.set(preferences::sampleWidgets, true);
    pass();
    EXPECT_EQ(decodeWidgetSnapshotFile(widgets())->terms.size(), 2U);
}

} // namespace
} // namespace ellwynd
