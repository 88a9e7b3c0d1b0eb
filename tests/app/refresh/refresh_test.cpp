// What the program requests from Canvas and records after various events, with a fake Canvas
// server.
#include "app/connectedtest.h"
#include "net/runtoend.h"
#include "support/rosters.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QThreadPool>

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
    void start() {
        controller.refresh();
        ASSERT_TRUE(untilPasses(1));
        controller.select(CourseSelection{1});
        ASSERT_TRUE(untilQuiet());
        canvas.requests.clear();
    }

    [[nodiscard]] std::int64_t asked(const QString &of) const {
        return std::ranges::count(canvas.requests, of, &test::FakeRequest::path);
    }

    /// In the entries of the history.
    [[nodiscard]] std::vector<std::string> levels() const {
        std::vector<std::string> levels;
        for (const RosterSnapshot &entry : core.stores.history.entries())
            levels.push_back(entry.level);
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

TEST_F(RefreshTest, ARefusedCourseIsNamed) {
    start();
    pass(1min);
    canvas.plan(
        test::coursePath(2, "enrollments"), {{.status = 403}, {.status = 403}, {.status = 403}});
    controller.select(TermSelection{9});
    ASSERT_TRUE(untilQuiet());
    EXPECT_EQ(controller.roster().state, RosterView::State::shown);
    EXPECT_THAT(
        controller.roster().notes,
        testing::ElementsAre("Bio couldn’t be read: Canvas refused the request."));
    EXPECT_TRUE(controller.roster().staleReason.empty());
    EXPECT_EQ(controller.roster().fetchedAt, noon) << "when the other course had been read";
    controller.refresh();
    ASSERT_TRUE(untilPasses(2));
    EXPECT_THAT(controller.dashboard().failedCourses(9), testing::ElementsAre("Bio"));
    EXPECT_EQ(controller.dashboard().progress(), PassProgress{}) << "the pass has ended";
    EXPECT_TRUE(errors.empty());
    // What was read of the other course is old, so the term is read again.
    controller.setActive(true);
    ASSERT_TRUE(untilQuiet());
    EXPECT_TRUE(controller.roster().notes.empty());
}

TEST_F(RefreshTest, AnAutomaticRefreshIsNotAVisit) {
    start();
    EXPECT_THAT(levels(), testing::ElementsAre("OK")) << "the course was opened";
    serveScores(canvas, 1, 20);
    pass(10min);
    controller.setActive(true);
    ASSERT_TRUE(untilPasses(2));
    EXPECT_EQ(levelCounts(controller.roster().rows).flagged(), 1) << "the current level is shown";
    EXPECT_THAT(levels(), testing::ElementsAre("OK")) << "the day already has an entry";
    pass(24h);
    controller.setActive(true);
    ASSERT_TRUE(untilPasses(3));
    EXPECT_THAT(levels(), testing::ElementsAre("OK", "At Risk")) << "the next day has none";
}

TEST_F(RefreshTest, AfterASignOutNoRequestStarts) {
    // Both courses have two pages of students.
    for (const int course : {1, 2})
        serveScores(canvas, course, 90, 101);
    const auto hasWidgets = [this] {
        return readWidgetSnapshot(core.folder.path() / "widgets").has_value();
    };
    struct Row {
        const char *reading;
        QString held;
        bool losesToken = false;
    };
    for (const Row &row : {
             Row{"the list", QStringLiteral("/api/v1/courses")},
             Row{"the roster on screen", test::coursePath(1, "enrollments")},
             Row{"a pass", test::coursePath(2, "enrollments"), true},
         }) {
        SCOPED_TRACE(row.reading);
        passes.clear();
        core.connectTo(canvas.address());
        start();
        ASSERT_TRUE(hasWidgets());
        canvas.hold(row.held);
        controller.refresh();
        ASSERT_TRUE(until(
            [&] { return asked(row.held) == 1 && core.session.requestLimiter().inFlight() == 1; }));
        const std::size_t before = canvas.requests.size();
        if (row.losesToken) {
            // The address stays saved.
            core.secrets.secrets.clear();
            controller.connectionDidChange();
            ASSERT_TRUE(until([&] { return controller.status() == "Not connected"; }));
        } else {
            static_cast<void>(runToEnd(core.check.signOut()));
        }
        EXPECT_EQ(controller.status(), "Not connected");
        EXPECT_TRUE(controller.courses().isEmpty()) << "at once, although it is still being read";
        canvas.release();
        ASSERT_TRUE(untilQuiet());
        EXPECT_EQ(canvas.requests.size(), before);
        EXPECT_EQ(controller.roster().state, RosterView::State::notConnected);
        for (const int course : {1, 2})
            EXPECT_EQ(controller.levels(course), std::nullopt) << course;
        EXPECT_FALSE(hasWidgets());
    }
}

TEST_F(RefreshTest, ACourseDecodedAfterASignOutIsNotKept) {
    start();
    // Large bodies are decoded on another thread, and the only one is busy until the sign-out.
    canvas.plan(
        test::coursePath(2, "enrollments"), {{.body = "[" + QByteArray(1 << 20, ' ') + "]"}});
    QThreadPool &threads = *QThreadPool::globalInstance();
    const int count = threads.maxThreadCount();
    threads.setMaxThreadCount(1);
    QSemaphore signedOut;
    threads.start([&] { signedOut.acquire(); });
    controller.refresh();
    const bool isReceived = until([&] {
        return asked(test::coursePath(2, "enrollments")) == 1 &&
            core.session.requestLimiter().inFlight() == 0;
    });
    static_cast<void>(runToEnd(core.check.signOut()));
    signedOut.release();
    threads.waitForDone();
    threads.setMaxThreadCount(count);
    ASSERT_TRUE(isReceived);
    QCoreApplication::processEvents();
    EXPECT_EQ(controller.levels(2), std::nullopt);
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
