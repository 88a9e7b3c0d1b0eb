#include "app/mainwindowcontroller.h"
#include "risk/levelcounts.h"
#include "support/core.h"
#include "support/instants.h"
#include "support/logcapture.h"
#include "support/snapshots.h"
#include "support/until.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

struct ControllerTest : testing::Test {
    test::Core core{{{"SampleData", true}}, test::noonClock};
    UserDefaults &defaults = core.defaults;
    MainWindowController controller{defaults,    core.connector, core.stores,
                                    core.trends, core.sinks,     test::noonClock};

    void open(std::int64_t courseID) {
        controller.refresh();
        controller.select(CourseSelection{courseID});
    }

    [[nodiscard]] const RosterView &roster() const { return controller.roster(); }

    [[nodiscard]] std::int64_t flagged() const { return levelCounts(roster().rows).flagged(); }
};

TEST_F(ControllerTest, BeginsWithTheDashboardAndShowsATermAndACourse) {
    controller.refresh();
    EXPECT_EQ(controller.selection(), Selection{DashboardSelection{}});
    EXPECT_EQ(roster().state, RosterView::State::nothingSelected);
    EXPECT_EQ(controller.status(), "Sample college · 7 courses");
    ASSERT_NE(controller.dashboard().shownTerm(), nullptr);
    controller.select(TermSelection{9001});
    ASSERT_EQ(roster().state, RosterView::State::shown);
    EXPECT_EQ(roster().title, "Fall 2026");
    EXPECT_EQ(roster().courseCount, 6U);
    EXPECT_EQ(flagged(), std::int64_t(roster().rows.size()));
    controller.select(CourseSelection{900102});
    EXPECT_EQ(roster().courseID, 900102);
    EXPECT_EQ(roster().rows.size(), 18U);
    EXPECT_TRUE(roster().missedWork.front().isClassWide);
    EXPECT_EQ(roster().fetchedAt, test::noon);
    EXPECT_EQ(controller.levels(900102)->flagged(), flagged());
    EXPECT_EQ(controller.levels(900201)->flagged(), 7) << "scored by the pass";
}

TEST_F(ControllerTest, TheSidebarAppliesTheTermLimit) {
    controller.refresh();
    EXPECT_EQ(controller.courses().sidebarTerms().size(), 6U);
    defaults.set(preferences::sidebarTermLimit, std::int64_t{0});
    EXPECT_EQ(controller.courses().sidebarTerms().size(), 11U);
    defaults.set(preferences::sidebarTermLimit, std::int64_t{1});
    EXPECT_EQ(controller.courses().sidebarTerms().size(), 1U);
    // Courses of older terms open like any other.
    controller.select(CourseSelection{900301});
    EXPECT_EQ(roster().state, RosterView::State::shown);
    EXPECT_FALSE(roster().rows.empty());
}

TEST_F(ControllerTest, AThresholdChangeRescoresTheCache) {
    open(900101);
    const std::int64_t before = flagged();
    int announced = 0;
    QObject::connect(
        &controller, &MainWindowController::rosterDidChange, &controller, [&] { ++announced; });

    courseSettings::set(defaults, 900101, courseSettings::passingScore, 85.0);
    EXPECT_GT(flagged(), before);
    EXPECT_EQ(roster().thresholds->passingScore, 85);
    EXPECT_TRUE(roster().thresholdsChanged) << "since the course was opened";
    EXPECT_EQ(announced, 1);
    EXPECT_EQ(controller.levels(900101)->flagged(), flagged());
    useDefaults(defaults, 900101);
    EXPECT_EQ(flagged(), before);
    defaults.set("Course.7.Icon", std::string("flask"));
    EXPECT_EQ(announced, 2) << "settings that do not affect scores announce nothing";
}

TEST_F(ControllerTest, AThresholdChangeRescoresATerm) {
    int ended = 0;
    QObject::connect(
        &controller, &MainWindowController::rescoringDidEnd, &controller, [&] { ++ended; });
    defaults.set(preferences::defaultPassingScore, 70.0);
    EXPECT_EQ(ended, 1) << "without any courses";
    controller.refresh();
    controller.select(TermSelection{9001});
    const std::size_t before = roster().rows.size();
    defaults.set(preferences::defaultPassingScore, 95.0);
    EXPECT_TRUE(test::until([&] { return ended > 1; }));
    EXPECT_GT(roster().rows.size(), before);
}

TEST_F(ControllerTest, AVisitShowsTheMovementAndIsRecorded) {
    controller.refresh();
    const auto entriesToday = [this](std::int64_t courseID) {
        return std::ranges::count_if(
            core.stores.history.entries(), [&](const RosterSnapshot &entry) {
                return entry.courseID == courseID && entry.recordedAt == test::noon;
            });
    };
    controller.select(TermSelection{9001});
    controller.refreshRoster();
    ASSERT_EQ(roster().state, RosterView::State::shown);
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

    defaults.set(preferences::rememberContacts, false);
    EXPECT_EQ(roster().insight->outreachLine, "Contact marks are turned off in Settings.");
    defaults.set(preferences::rememberContacts, true);
    EXPECT_EQ(
        roster().insight->outreachLine, "0 contacted · 0 awaiting follow-up · 26 not yet reached");
}

TEST_F(ControllerTest, AContactMarkCanBeUndoneUntilTheConnectionChanges) {
    open(900101);
    UndoStack &undo = controller.undoStack();
    RosterActions &actions = controller.actions();
    actions.markContacted({});
    actions.removeContactMarks({});
    EXPECT_EQ(undo.newest(), nullptr);
    const std::pair<const char *, std::function<void()>> changes[] = {
        {"another token", [&] { controller.connectionDidChange(); }},
        {"another address", [&] { defaults.set(preferences::canvasBaseURL, std::string("x")); }},
        {"the sample college", [&] { defaults.set(preferences::sampleData, false); }}};
    for (const auto &[what, change] : changes) {
        actions.markContacted({roster().rows.front()});
        ASSERT_NE(undo.newest(), nullptr) << what;
        change();
        EXPECT_EQ(undo.newest(), nullptr) << what;
        open(900101);
    }
}

TEST_F(ControllerTest, CopiesMessagesAndRecordsTheContacts) {
    open(900101);
    std::string copied;
    bool clipboardIsFree = false;
    const auto clipboard = [&](const std::string &text) {
        copied = text;
        return clipboardIsFree;
    };
    std::vector<std::string> shown;
    QObject::connect(
        &controller.actions(), &RosterActions::noteRequested, &controller,
        [&](const QString &note) { shown.push_back(note.toStdString()); });
    const MessageTemplate &email = core.stores.templates.templates().front();
    core.stores.contacts.deleteAll();
    controller.actions().copyMessages(email, roster().rows, clipboard);
    EXPECT_TRUE(core.stores.contacts.records().empty()) << "nothing was copied";
    clipboardIsFree = true;
    controller.actions().copyMessages(email, roster().rows, clipboard);
    EXPECT_THAT(
        shown,
        testing::ElementsAre(
            "Nothing was copied, because another program holds the clipboard. Try again.",
            "Copied 26 messages, one below the other. Send each to its own student."));
    const auto passing = [](std::int64_t) { return 70.0; };
    EXPECT_EQ(copied, fillAll(email, roster().rows, roster().title, passing));
    EXPECT_EQ(core.stores.contacts.records().size(), 26U);
    controller.actions().copyMessages(email, {}, clipboard);
    EXPECT_EQ(shown.size(), 2U);
}

TEST_F(ControllerTest, ExportsTheRosterOnScreen) {
    controller.refresh();
    int failures = 0;
    QObject::connect(
        &controller.actions(), &RosterActions::exportDidFail, &controller, [&] { ++failures; });
    controller.select(TermSelection{9001});
    const RosterExport term = controller.actions().exported(ExportFormat::csv);
    EXPECT_EQ(term.fileName, "Ellwynd — Fall 2026 — 2026-09-24.csv");
    EXPECT_THAT(term.text, testing::StartsWith("Risk,Student,Course,"));
    controller.select(CourseSelection{900101});
    const RosterExport course = controller.actions().exported(ExportFormat::markdown);
    EXPECT_THAT(course.text, testing::StartsWith("# CS 101  4021 - Intro to Programming\n"));
    controller.actions().saveExport(course, core.folder.path() / course.fileName);
    EXPECT_EQ(core.folder.read(course.fileName), course.text);
    const auto link = core.folder.path() / "link.md";
    std::filesystem::create_symlink(course.fileName, link);
    controller.actions().saveExport(term, link);
    EXPECT_EQ(core.folder.read(course.fileName), term.text);
    controller.actions().saveExport(course, core.folder.path() / course.fileName / "x.md");
    EXPECT_EQ(failures, 1);
}

TEST(RosterActions, OpenCanvasPages) {
    test::Core core({{"CanvasBaseURL", std::string("https://h.example")}});
    const RosterView roster;
    UndoStack undo;
    RosterActions actions(roster, core.defaults, core.stores, undo, test::noonClock);
    std::vector<std::string> opened;
    QObject::connect(
        &actions, &RosterActions::openURLRequested, &actions,
        [&](const QString &url, const QString &page) {
            opened.push_back(url.toStdString());
            actions.pageDidOpen(page, !url.contains(QStringLiteral("assignments")));
        });
    const test::LogCapture log;
    actions.openCourse(7);
    actions.openGrades(7, 9);
    actions.openAssignment(7, 8);
    actions.openCourse(0);
    EXPECT_THAT(
        opened,
        testing::ElementsAre(
            "https://h.example/courses/7", "https://h.example/courses/7/grades/9",
            "https://h.example/courses/7/assignments/8"));
    EXPECT_THAT(
        test::LogCapture::lines(),
        testing::ElementsAre(
            "links: Opening course 7 in Canvas", "links: Opening a student's grades in Canvas",
            "links: The browser did not open course 7",
            "links: Couldn't build a Canvas URL for course 0"));
}

TEST(Controller, DeletesTheWidgetFilesOfAnotherAddressAtItsStart) {
    for (const auto &[shown, address, keeps] :
         std::vector<std::tuple<const char *, const char *, bool>>{
             {"https://h.example", "https://h.example", true},
             {"https://h.example", "https://H.example/", true},
             {"https://h.example", "https://other.example", false},
             {"https://h.example", "", false},
             {"", "https://h.example", true}}) {
        test::Core core;
        core.widgets.write(test::twoTerms());
        core.defaults.update(
            {{"WidgetsAddress", std::string(shown)}, {"CanvasBaseURL", std::string(address)}});
        const MainWindowController controller(
            core.defaults, core.connector, core.stores, core.trends, core.sinks);
        const bool isThere = readWidgetSnapshot(core.folder.path() / "widgets").has_value();
        EXPECT_EQ(isThere, keeps) << shown << " " << address;
        EXPECT_EQ(core.defaults.value(preferences::widgetsAddress), address);
    }
}

} // namespace
} // namespace ellwynd
