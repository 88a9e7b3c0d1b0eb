#include "app/mainwindowcontroller.h"
#include "net/runtoend.h"
#include "support/core.h"
#include "support/fakecanvas.h"
#include "support/instants.h"
#include "support/until.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using test::until;

struct ControllerTest : testing::Test {
    test::Core core{{{"SampleData", true}}, test::noonClock};
    UserDefaults &defaults = core.defaults;
    MainWindowController controller{defaults,    core.connector, core.stores,
                                    core.trends, core.sinks,     test::noonClock};

    [[nodiscard]] const RosterView &roster() const { return controller.roster(); }

    [[nodiscard]] std::vector<std::int64_t> flagged() const {
        std::vector<std::int64_t> ids;
        for (const RiskRow &row : roster().rows) {
            if (row.level)
                ids.push_back(row.id);
        }
        return ids;
    }
};

TEST_F(ControllerTest, BeginsWithTheDashboardAndShowsATermWorstFirst) {
    controller.refresh();
    EXPECT_EQ(controller.selection(), Selection{DashboardSelection{}});
    EXPECT_EQ(roster().state, RosterView::State::nothingSelected);
    ASSERT_NE(controller.dashboard().shownTerm(), nullptr);
    controller.select(TermSelection{9001});
    ASSERT_EQ(roster().state, RosterView::State::shown);
    EXPECT_EQ(roster().title, "Fall 2026");
    EXPECT_EQ(roster().courseCount, 6U);
    EXPECT_EQ(controller.status(), "Sample college · 7 courses");
    EXPECT_TRUE(std::ranges::is_sorted(roster().rows, std::greater{}, &RiskRow::score));
    for (const RiskRow &row : roster().rows)
        EXPECT_TRUE(row.level) << row.name;
}

TEST_F(ControllerTest, ShowsOneCourseWithItsMissingWork) {
    controller.refresh();
    controller.select(CourseSelection{900102});
    EXPECT_EQ(roster().courseID, 900102);
    EXPECT_EQ(roster().rows.size(), 18U);
    EXPECT_TRUE(roster().missedWork.front().isClassWide);
    EXPECT_EQ(roster().fetchedAt, test::noon);
    EXPECT_EQ(controller.flaggedStudents(900102), std::int64_t(flagged().size()));
    EXPECT_EQ(controller.flaggedStudents(900201), 7) << "scored by the pass";
}

TEST_F(ControllerTest, TheSidebarAppliesTheTermLimit) {
    EXPECT_TRUE(controller.courses().sidebarTerms().empty());
    controller.refresh();
    EXPECT_EQ(controller.courses().sidebarTerms().size(), 6U);
    defaults.set(preferences::sidebarTermLimit, std::int64_t{0});
    const auto all = controller.courses().sidebarTerms();
    EXPECT_EQ(all.size(), 11U);
    EXPECT_EQ(title(all.front()), "Fall 2026");
    EXPECT_EQ(title(all[2]), "Spring 2026");
    EXPECT_EQ(title(all.back()), "Winter 2024");
    defaults.set(preferences::sidebarTermLimit, std::int64_t{1});
    EXPECT_EQ(controller.courses().sidebarTerms().size(), 1U);
    // Courses of older terms open like any other.
    controller.select(CourseSelection{900301});
    EXPECT_EQ(roster().state, RosterView::State::shown);
    EXPECT_FALSE(roster().rows.empty());
}

TEST_F(ControllerTest, AThresholdChangeRescoresTheCache) {
    controller.refresh();
    controller.select(CourseSelection{900101});
    const std::size_t before = flagged().size();
    const Date fetched = roster().fetchedAt;
    int announced = 0;
    QObject::connect(
        &controller, &MainWindowController::rosterDidChange, &controller, [&] { ++announced; });

    courseSettings::set(defaults, 900101, courseSettings::passingScore, 85.0);
    EXPECT_GT(flagged().size(), before);
    EXPECT_EQ(roster().thresholds->passingScore, 85);
    EXPECT_EQ(roster().fetchedAt, fetched);
    EXPECT_EQ(announced, 1);
    EXPECT_EQ(controller.flaggedStudents(900101), std::int64_t(flagged().size()));

    useDefaults(defaults, 900101);
    EXPECT_EQ(flagged().size(), before);
    defaults.set(preferences::defaultPassingScore, 40.0);
    EXPECT_LT(flagged().size(), before);
    defaults.set("Course.7.Icon", std::string("flask"));
    EXPECT_EQ(announced, 3) << "settings that do not affect scores announce nothing";
}

TEST_F(ControllerTest, AVisitShowsTheMovementAndIsRecorded) {
    controller.refresh();
    const auto entriesToday = [this](std::int64_t courseID) {
        return std::ranges::count_if(
            core.stores.history.entries(), [&](const RosterSnapshot &entry) {
                return entry.courseID == courseID && entry.recordedAt == test::noon;
            });
    };
    EXPECT_EQ(entriesToday(900101), 0) << "showing a term is not a visit";
    controller.select(CourseSelection{900101});
    EXPECT_EQ(
        rememberedLine(roster()),
        "Since last time: 1 slipped · 1 newly flagged · 2 improved · 1 awaiting follow-up");
    EXPECT_EQ(entriesToday(900101), 26);
    ASSERT_TRUE(roster().insight);
    EXPECT_EQ(roster().insight->sentences[0], "At Risk: 3 now, up from 1 earlier.");
    EXPECT_EQ(
        roster().insight->outreachLine, "3 contacted · 1 awaiting follow-up · 7 not yet reached");
    EXPECT_EQ(controller.studentHistory(roster().rows[1]).trend->points.size(), 8U);

    // Another visit on the same day shows the same movement, and rescoring records nothing.
    controller.refreshRoster();
    EXPECT_EQ(roster().movement.size(), 4U);
    defaults.set(preferences::defaultPassingScore, 99.0);
    EXPECT_EQ(entriesToday(900101), 26);
    EXPECT_GT(roster().movement.size(), 4U);
    for (const RosterSnapshot &entry : core.stores.history.entries())
        EXPECT_FALSE(entry.level == "Watch" && entry.studentID == 5010) << "not recorded";

    controller.actions().markContacted({roster().rows[0]});
    EXPECT_TRUE(roster().outreach.contains(keyOf(roster().rows[0])));
    defaults.set(preferences::rememberContacts, false);
    EXPECT_TRUE(roster().outreach.empty());
    EXPECT_EQ(roster().insight->outreachLine, "Contact marks are turned off in Settings.");
}

TEST_F(ControllerTest, CopiesMessagesAndRecordsTheContacts) {
    controller.refresh();
    controller.select(CourseSelection{900101});
    std::vector<std::string> copied;
    QObject::connect(
        &controller.actions(), &RosterActions::copyRequested, &controller,
        [&](const QString &text) { copied.push_back(text.toStdString()); });
    const MessageTemplate &email = core.stores.templates.templates().front();
    core.stores.contacts.deleteAll();
    controller.actions().copyMessages(email, roster().rows);
    ASSERT_EQ(copied.size(), 1U);
    EXPECT_EQ(copied[0], fillAll(email, roster().rows, roster().title, [](std::int64_t) {
                  return 70.0;
              }));
    ASSERT_EQ(core.stores.contacts.records().size(), 26U);
    for (const ContactRecord &record : core.stores.contacts.records())
        EXPECT_EQ(record.contactedAt, test::noon);
    controller.actions().copyMessages(email, {});
    EXPECT_EQ(copied.size(), 1U);
}

TEST_F(ControllerTest, ExportsTheRosterOnScreen) {
    controller.refresh();
    std::vector<std::string> failures;
    QObject::connect(
        &controller.actions(), &RosterActions::exportDidFail, &controller,
        [&](const QString &why) { failures.push_back(why.toStdString()); });
    controller.select(TermSelection{9001});
    const RosterExport term = controller.actions().exported(ExportFormat::csv);
    EXPECT_EQ(term.fileName, "Ellwynd — Fall 2026 — 2026-09-24.csv");
    EXPECT_THAT(term.text, testing::StartsWith("Risk,Student,Course,"));
    controller.select(CourseSelection{900101});
    const RosterExport course = controller.actions().exported(ExportFormat::markdown);
    EXPECT_THAT(course.text, testing::StartsWith("# CS 101  4021 - Intro to Programming\n"));
    controller.actions().saveExport(course, core.folder.path() / course.fileName);
    EXPECT_EQ(core.folder.read(course.fileName), course.text);
    controller.actions().saveExport(course, core.folder.path() / course.fileName / "x.md");
    EXPECT_EQ(failures.size(), 1U);
}

TEST_F(ControllerTest, WithoutAConnectionEverythingIsEmpty) {
    test::Core unconnected;
    MainWindowController other{unconnected.defaults, unconnected.connector, unconnected.stores,
                               unconnected.trends,   unconnected.sinks,     test::noonClock};
    other.refresh();
    EXPECT_EQ(other.roster().state, RosterView::State::notConnected);
    EXPECT_EQ(other.status(), "Not connected");
    EXPECT_TRUE(other.courses().sidebarTerms().empty());
}

TEST_F(ControllerTest, OpensCanvasPages) {
    std::vector<std::string> opened;
    int invented = 0;
    const auto listen = [&](MainWindowController &driver) {
        QObject::connect(
            &driver.actions(), &RosterActions::openURLRequested, &driver,
            [&](const QString &url) { opened.push_back(url.toStdString()); });
        QObject::connect(
            &driver.actions(), &RosterActions::samplePageRequested, &driver, [&] { ++invented; });
    };
    listen(controller);
    controller.actions().openGrades(900101, 5001);
    EXPECT_EQ(invented, 1);

    test::Core connected({{"CanvasBaseURL", std::string("https://h.example")}});
    MainWindowController real(
        connected.defaults, connected.connector, connected.stores, connected.trends,
        connected.sinks);
    listen(real);
    real.actions().openCourse(7);
    real.actions().openGrades(7, 9);
    real.actions().openAssignment(7, 8);
    real.actions().openCourse(0);
    EXPECT_THAT(
        opened,
        testing::ElementsAre(
            "https://h.example/courses/7", "https://h.example/courses/7/grades/9",
            "https://h.example/courses/7/assignments/8"));
}

/// A controller connected to a fake Canvas with three courses of one student each.
struct LiveControllerTest : testing::Test {
    test::Core core;
    test::FakeCanvas canvas;
    MainWindowController controller{
        core.defaults, core.connector, core.stores, core.trends, core.sinks};
    std::vector<CanvasError> errors;

    LiveControllerTest() {
        test::trustAuthority();
        core.connectTo(canvas.address());
        canvas.serve(
            QStringLiteral("/api/v1/courses"),
            {R"({"id":1,"name":"Art","term":{"id":9,"name":"Fall"}})",
             R"({"id":2,"name":"Bio","term":{"id":9,"name":"Fall"}})",
             R"({"id":3,"name":"Chem"})"});
        for (const int course : {1, 2, 3}) {
            canvas.serve(
                path(course, "enrollments"),
                {QStringLiteral(R"({"user_id":%1,"user":{"id":%1,"name":"Student"},)"
                                R"("grades":{"current_score":40}})")
                     .arg(course * 10)
                     .toUtf8()});
            canvas.serve(path(course, "assignment_groups"), {});
            canvas.serve(path(course, "students/submissions"), {});
        }
        QObject::connect(
            &controller, &MainWindowController::errorDidOccur, &controller,
            [this](const CanvasError &error) { errors.push_back(error); });
        // The selection is kept until the list arrives.
        controller.select(TermSelection{9});
    }

    static QString path(int course, const char *rest) {
        return QStringLiteral("/api/v1/courses/%1/").arg(course) + QString::fromUtf8(rest);
    }

    bool untilShown(const std::string &title) {
        return until([&] {
            return controller.roster().state == RosterView::State::shown &&
                controller.roster().title == title && !controller.isLoading();
        });
    }
};

TEST_F(LiveControllerTest, LoadsTheTermAndACourse) {
    std::vector<std::size_t> progress;
    QObject::connect(&controller, &MainWindowController::loadingDidChange, &controller, [&] {
        const std::size_t loaded = controller.roster().loadedCourses;
        const bool loading = controller.roster().state == RosterView::State::loading;
        if (loading && (progress.empty() || progress.back() != loaded))
            progress.push_back(loaded);
    });
    controller.refresh();
    ASSERT_TRUE(untilShown("Fall"));
    EXPECT_EQ(progress, (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(controller.status(), "3 courses");
    EXPECT_EQ(controller.roster().rows.size(), 2U);
    controller.select(CourseSelection{3});
    EXPECT_EQ(controller.roster().state, RosterView::State::loading);
    ASSERT_TRUE(untilShown("Chem"));
    EXPECT_EQ(controller.roster().rows[0].id, 30);
    EXPECT_TRUE(errors.empty());
    EXPECT_EQ(noteText(controller.roster()), "");
}

TEST_F(LiveControllerTest, IncompleteListsAreReported) {
    const test::FakeReply cut{.headers = {{"Link", R"(<https://elsewhere.example/>; rel="next")"}}};
    controller.refresh();
    ASSERT_TRUE(untilShown("Fall"));
    canvas.plan(path(2, "students/submissions"), {cut, cut});
    controller.select(CourseSelection{2});
    ASSERT_TRUE(until([&] { return !controller.roster().notes.empty(); }));
    const std::string note = "The list of submissions is incomplete: Canvas linked its next page "
                             "to another address, where your token is not sent.";
    EXPECT_EQ(noteText(controller.roster()), note);
    EXPECT_EQ(core.stores.history.entries().size(), 1U) << "recorded as usual";
    controller.select(TermSelection{9});
    EXPECT_EQ(noteText(controller.roster()), "Bio: " + note);

    canvas.plan(
        QStringLiteral("/api/v1/courses"),
        {{.body = R"([{"id":1,"name":"Art"}])", .headers = cut.headers}});
    controller.refresh();
    ASSERT_TRUE(until([&] { return controller.status() == "1 course · list incomplete"; }));
}

TEST_F(LiveControllerTest, ACourseRequestedByIdOpensWhenTheListArrives) {
    controller.showCourse(2);
    controller.refresh();
    ASSERT_TRUE(untilShown("Bio"));
    controller.showCourse(99);
    EXPECT_EQ(controller.roster().title, "Bio");
    controller.showCourse(3);
    ASSERT_TRUE(untilShown("Chem"));

    // The dashboard is selected when the selected course is no longer in the list.
    canvas.serve(
        QStringLiteral("/api/v1/courses"),
        {R"({"id":1,"name":"Art","term":{"id":9,"name":"Fall"}})"});
    controller.refresh();
    ASSERT_TRUE(until([&] { return controller.selection() == Selection{DashboardSelection{}}; }));
    EXPECT_EQ(controller.roster().state, RosterView::State::nothingSelected);
}

TEST_F(LiveControllerTest, TheThreeReadsOfACourseRunConcurrently) {
    controller.refresh();
    ASSERT_TRUE(untilShown("Fall"));
    canvas.maxInFlight = 0;
    canvas.holdUntil(3);
    controller.showCourse(2);
    ASSERT_TRUE(untilShown("Bio")) << "no read is answered before all three have started";
    EXPECT_EQ(canvas.maxInFlight, 3);
    const int connections = canvas.connections;
    controller.refreshRoster();
    ASSERT_TRUE(until([&] { return !controller.isLoading(); }));
    EXPECT_EQ(canvas.connections, connections) << "connections are reused";
}

TEST_F(LiveControllerTest, ASlowResponseNeverOverwritesALaterSelection) {
    controller.refresh();
    ASSERT_TRUE(untilShown("Fall"));
    canvas.hold(path(1, "enrollments"));
    std::vector<std::string> shown;
    QObject::connect(&controller, &MainWindowController::rosterDidChange, &controller, [&] {
        shown.push_back(controller.roster().title);
    });
    controller.select(CourseSelection{1});
    controller.select(CourseSelection{2});
    ASSERT_TRUE(untilShown("Bio"));
    shown.clear();
    // The slow response arrives and is dropped.
    canvas.release();
    ASSERT_TRUE(until([&] { return core.session.requestLimiter().inFlight() == 0; }));
    QCoreApplication::processEvents();
    EXPECT_TRUE(shown.empty());
    EXPECT_EQ(controller.roster().title, "Bio");
}

TEST_F(LiveControllerTest, TenRefreshesDuringOneCauseOneMore) {
    canvas.hold(QStringLiteral("/api/v1/courses"));
    controller.refresh();
    ASSERT_TRUE(until([&] { return !canvas.requests.empty(); }));
    for (int i = 0; i < 10; ++i)
        controller.refresh();
    canvas.release();
    ASSERT_TRUE(untilShown("Fall"));
    ASSERT_TRUE(until([&] { return !controller.isLoading(); }));
    EXPECT_EQ(
        std::ranges::count(
            canvas.requests, QStringLiteral("/api/v1/courses"), &test::FakeRequest::path),
        2);
}

TEST_F(LiveControllerTest, AFailedRefreshKeepsTheRows) {
    controller.refresh();
    ASSERT_TRUE(untilShown("Fall"));
    controller.select(CourseSelection{1});
    ASSERT_TRUE(untilShown("Art"));
    const Date fetched = controller.roster().fetchedAt;
    canvas.plan(path(1, "enrollments"), {{.status = 401}});
    controller.refreshRoster();
    ASSERT_TRUE(until([&] { return !controller.roster().staleReason.empty(); }));
    EXPECT_EQ(
        noteText(controller.roster()),
        "Canvas rejected the access token. Canvas may have refused access to Art only. Showing "
        "what was loaded before.");
    EXPECT_EQ(controller.roster().rows.size(), 1U);
    EXPECT_EQ(controller.roster().fetchedAt, fetched);
    EXPECT_TRUE(errors.empty());

    canvas.plan(path(3, "enrollments"), {{.status = 404}});
    controller.select(CourseSelection{3});
    ASSERT_TRUE(until([&] { return controller.roster().state == RosterView::State::failed; }));
    EXPECT_EQ(errors.back(), CanvasError(CanvasError::Kind::notFound));
}

TEST_F(LiveControllerTest, ARejectedTokenALockedKeyringAndASignOut) {
    canvas.token = "another";
    controller.refresh();
    ASSERT_TRUE(until([&] { return !controller.isLoading(); }));
    EXPECT_FALSE(errors.empty());
    EXPECT_EQ(controller.status(), "Canvas rejected the token");
    canvas.token = "secret-token";
    controller.refresh();
    ASSERT_TRUE(untilShown("Fall"));

    core.secrets.failure = KeychainError(KeychainError::locked, "locked");
    controller.refresh();
    EXPECT_TRUE(until([&] { return controller.status() == "Keychain unavailable"; }));
    EXPECT_EQ(controller.roster().title, "Fall") << "the roster on screen is kept";
    core.secrets.failure.reset();

    static_cast<void>(runToEnd(core.check.signOut()));
    controller.refresh();
    EXPECT_EQ(controller.status(), "Not connected");
    EXPECT_EQ(controller.roster().state, RosterView::State::notConnected);
    EXPECT_EQ(controller.flaggedStudents(1), std::nullopt);
}

} // namespace
} // namespace ellwynd
