#include "app/mainwindowcontroller.h"
#include "support/instants.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

struct ControllerTest : testing::Test {
    test::TemporaryFolder folder;
    UserDefaults defaults{folder.path() / "Preferences.json", {{"SampleData", true}}};
    MainWindowController controller{defaults, test::noonClock};

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

TEST_F(ControllerTest, BeginsWithTheNewestTermWorstFirst) {
    controller.refresh();
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
    EXPECT_EQ(controller.flaggedStudents(900201), std::nullopt) << "not fetched yet";
}

TEST_F(ControllerTest, SidebarListsAsManyTermsAsWanted) {
    EXPECT_TRUE(controller.sidebarTerms().empty());
    controller.refresh();
    EXPECT_EQ(controller.sidebarTerms().size(), 6U);
    defaults.set(preferences::sidebarTermLimit, std::int64_t{0});
    const auto all = controller.sidebarTerms();
    EXPECT_EQ(all.size(), 11U);
    EXPECT_EQ(title(all.front()), "Fall 2026");
    EXPECT_EQ(title(all[2]), "Spring 2026");
    EXPECT_EQ(title(all.back()), "Winter 2024");
    defaults.set(preferences::sidebarTermLimit, std::int64_t{1});
    EXPECT_EQ(controller.sidebarTerms().size(), 1U);
    // A course of an older term opens as any other does.
    controller.select(CourseSelection{900301});
    EXPECT_EQ(roster().state, RosterView::State::shown);
    EXPECT_FALSE(roster().rows.empty());
}

TEST_F(ControllerTest, AThresholdScoresAgainWhatIsInMemory) {
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
    EXPECT_EQ(announced, 3) << "what scores nothing announces nothing";
}

TEST_F(ControllerTest, WithoutAConnectionEverythingIsEmpty) {
    UserDefaults unconnected(folder.path() / "Other.json", {});
    MainWindowController other(unconnected, test::noonClock);
    other.refresh();
    EXPECT_EQ(other.roster().state, RosterView::State::notConnected);
    EXPECT_EQ(other.status(), "Not connected");
    EXPECT_TRUE(other.sidebarTerms().empty());
}

TEST_F(ControllerTest, PagesOfCanvasOpenByAddress) {
    std::vector<std::string> opened;
    int invented = 0;
    const auto listen = [&](MainWindowController &driver) {
        QObject::connect(
            &driver, &MainWindowController::urlShouldOpen, &driver,
            [&](const QString &url) { opened.push_back(url.toStdString()); });
        QObject::connect(
            &driver, &MainWindowController::pageIsInvented, &driver, [&] { ++invented; });
    };
    listen(controller);
    controller.openGrades(900101, 5001);
    EXPECT_EQ(invented, 1);

    UserDefaults connected(
        folder.path() / "Other.json", {{"CanvasBaseURL", std::string("https://h.example")}});
    MainWindowController real(connected);
    listen(real);
    real.openCourse(7);
    real.openGrades(7, 9);
    real.openAssignment(7, 8);
    real.openCourse(0);
    EXPECT_THAT(
        opened,
        testing::ElementsAre(
            "https://h.example/courses/7", "https://h.example/courses/7/grades/9",
            "https://h.example/courses/7/assignments/8"));
}

} // namespace
} // namespace ellwynd
