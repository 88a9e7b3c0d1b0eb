// What the program requests from Canvas and records after various events, with a fake Canvas
// server.
#include "app/connectedtest.h"
#include "net/runtoend.h"
#include "support/rosters.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using namespace std::chrono_literals;
using test::noon;
using test::serveScores;
using test::until;

struct RefreshTest : test::ConnectedTest {
    RefreshTest() { controller.setActive(true); }

    static void pass(std::chrono::milliseconds time) {
        test::wallTime += time;
        test::slept += time;
    }

    /// Starts, waits for the first pass, and selects a course.
    void start(std::int64_t courseID = 1) {
        controller.refresh();
        ASSERT_TRUE(untilPasses(1));
        controller.select(CourseSelection{courseID});
        ASSERT_TRUE(untilQuiet());
        canvas.requests.clear();
    }

    [[nodiscard]] std::int64_t asked(const QString &of) const {
        return std::ranges::count(canvas.requests, of, &test::FakeRequest::path);
    }

    [[nodiscard]] std::vector<std::string> levels(std::int64_t courseID) const {
        std::vector<std::string> levels;
        for (const RosterSnapshot &entry : core.stores.history.entries()) {
            if (entry.courseID == courseID)
                levels.push_back(entry.level);
        }
        return levels;
    }
};

TEST_F(RefreshTest, SwitchingWindowsReadsEachCourseOnce) {
    start();
    pass(10min);
    for (int i = 0; i < 120; ++i) {
        controller.setActive(false);
        controller.setActive(true);
        QCoreApplication::processEvents();
    }
    ASSERT_TRUE(untilPasses(2));
    ASSERT_TRUE(untilQuiet());
    EXPECT_EQ(canvas.requests.size(), 6U) << "both courses of the term, once each";
    controller.setActive(true);
    pass(59s);
    controller.setActive(true);
    ASSERT_TRUE(untilQuiet());
    EXPECT_EQ(canvas.requests.size(), 6U) << "fresh";
}

TEST_F(RefreshTest, ATermIsAsOldAsItsOldestCourse) {
    start(1);
    pass(10min);
    controller.select(CourseSelection{2});
    ASSERT_TRUE(until([&] { return controller.roster().title == "Bio" && untilQuiet(); }));
    ASSERT_EQ(controller.roster().fetchedAt, noon + 10min);
    controller.select(TermSelection{9});
    EXPECT_EQ(controller.roster().fetchedAt, noon);
    ASSERT_TRUE(untilQuiet());

    // The limit hides terms, and not the courses without one.
    core.defaults.set(preferences::sidebarTermLimit, std::int64_t{1});
    EXPECT_EQ(controller.courses().sidebarTerms().size(), 2U);
    EXPECT_FALSE(controller.courses().sidebarTerms().back().term);
}

TEST_F(RefreshTest, ARefusedCourseIsNamed) {
    start();
    canvas.plan(
        test::coursePath(2, "enrollments"), {{.status = 403}, {.status = 403}, {.status = 403}});
    controller.select(TermSelection{9});
    ASSERT_TRUE(untilQuiet());
    EXPECT_EQ(controller.roster().state, RosterView::State::shown);
    EXPECT_THAT(
        controller.roster().notes,
        testing::ElementsAre("Bio couldn’t be read: Canvas refused the request."));
    EXPECT_TRUE(controller.roster().staleReason.empty());
    controller.refresh();
    ASSERT_TRUE(untilPasses(2));
    EXPECT_THAT(controller.dashboard().failedCourses(9), testing::ElementsAre("Bio"));
    EXPECT_EQ(controller.dashboard().progress(), PassProgress{}) << "the pass has ended";
    EXPECT_TRUE(errors.empty());
}

TEST_F(RefreshTest, AnAutomaticRefreshIsNotAVisit) {
    start();
    EXPECT_THAT(levels(1), testing::ElementsAre("OK")) << "the course was opened";
    serveScores(canvas, 1, 20);
    pass(10min);
    controller.setActive(true);
    ASSERT_TRUE(untilPasses(2));
    EXPECT_EQ(levelCounts(controller.roster().rows).flagged(), 1) << "the current level is shown";
    EXPECT_THAT(levels(1), testing::ElementsAre("OK")) << "the day already has an entry";

    // The next day's first refresh, while the program is inactive, records nothing either.
    pass(24h);
    controller.setActive(false);
    controller.computerDidWake();
    ASSERT_TRUE(untilPasses(3));
    EXPECT_THAT(levels(1), testing::ElementsAre("OK"));
    // While the program is active it does, once.
    pass(10min);
    controller.setActive(true);
    ASSERT_TRUE(untilPasses(4));
    EXPECT_EQ(levels(1).size(), 2U);
    controller.refreshRoster();
    ASSERT_TRUE(untilQuiet());
    EXPECT_EQ(levels(1).size(), 2U);
}

TEST_F(RefreshTest, AnotherAddressSignsOutOfTheFirst) {
    start();
    test::FakeCanvas other;
    other.serve(QStringLiteral("/api/v1/courses"), {R"({"id":1,"name":"Other"})"});
    serveScores(other, 1, 90);
    // As if saved by another process.
    core.connectTo(other.address());
    EXPECT_TRUE(controller.courses().isEmpty());
    EXPECT_EQ(controller.levels(1), std::nullopt);
    EXPECT_TRUE(controller.dashboard().model().terms.empty());
    ASSERT_TRUE(until([&] { return !controller.courses().isEmpty(); }));
    ASSERT_TRUE(untilQuiet());
    EXPECT_EQ(displayName(controller.courses().latest().front()), "Other");
    EXPECT_TRUE(canvas.requests.empty()) << "no more requests to the first Canvas";
}

TEST_F(RefreshTest, AfterASignOutNoRequestStarts) {
    start();
    canvas.hold(QStringLiteral("/api/v1/courses"));
    controller.refresh();
    ASSERT_TRUE(until([&] { return asked(QStringLiteral("/api/v1/courses")) == 1; }));
    static_cast<void>(runToEnd(core.check.signOut()));
    EXPECT_EQ(controller.status(), "Not connected");
    EXPECT_EQ(controller.roster().state, RosterView::State::notConnected);
    EXPECT_TRUE(controller.courses().isEmpty()) << "at once, although the list is still being read";
    canvas.release();
    ASSERT_TRUE(untilQuiet());
    EXPECT_EQ(canvas.requests.size(), 1U);
}

TEST_F(RefreshTest, WakingUpMonthsLaterUsesTheTermsOfThatDay) {
    start();
    ASSERT_EQ(controller.dashboard().preparedTerms().size(), 1U);
    pass(24h * 200);
    controller.computerDidWake();
    ASSERT_TRUE(untilPasses(2));
    EXPECT_TRUE(controller.dashboard().preparedTerms().empty()) << "the term has long ended";
    EXPECT_EQ(asked(QStringLiteral("/api/v1/courses")), 1) << "the list is read again";
}

TEST_F(RefreshTest, AThresholdChangedDuringAPassAppliesToAllItsCourses) {
    start();
    canvas.hold(test::coursePath(2, "enrollments"));
    controller.refresh();
    ASSERT_TRUE(until([&] { return controller.dashboard().progress().done == 1; }));
    core.defaults.set(preferences::defaultPassingScore, 95.0);
    canvas.release();
    ASSERT_TRUE(untilPasses(2));
    for (const DashboardCourseCard &card : controller.dashboard().shownTerm()->cards)
        EXPECT_EQ(card.flagged(), 1) << card.name;
    const auto file = decodeWidgetSnapshotFile(core.folder.read("widgets/WidgetSnapshotV2.json"));
    ASSERT_TRUE(file);
    for (const WidgetCourseSummary &course : file->terms[0].courses)
        EXPECT_EQ(course.atRisk + course.concern + course.watch, 1);
}

TEST_F(RefreshTest, WithoutRowsOnlyTheFirstFailureIsShown) {
    const std::vector<test::FakeReply> down(9, {.status = 404});
    canvas.plan(QStringLiteral("/api/v1/courses"), down);
    controller.refresh();
    ASSERT_TRUE(until([&] { return errors.size() == 1; }));
    EXPECT_EQ(controller.status(), "Couldn’t load");
    for (int i = 0; i < 5; ++i) {
        pass(10min);
        controller.computerDidWake();
        ASSERT_TRUE(untilQuiet());
    }
    EXPECT_EQ(errors.size(), 1U);
    canvas.plan(QStringLiteral("/api/v1/courses"), {});
    pass(10min);
    controller.computerDidWake();
    ASSERT_TRUE(untilPasses(1));
    EXPECT_EQ(controller.status(), "3 courses");
}

} // namespace
} // namespace ellwynd
