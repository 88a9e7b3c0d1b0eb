#include "support/fakecanvas.h"
#include "support/mainwindow.h"
#include "support/servedcourse.h"
#include "ui/dashboard/coursecard.h"

#include <QHeaderView>
#include <QLineEdit>

namespace ellwynd {
namespace {

/// Two courses of the same title, read from a Canvas server.
struct SameTitleTest : test::MainWindowTest {
    test::FakeCanvas canvas;

    SameTitleTest() : MainWindowTest(PreferenceMap{}) {
        test::trustAuthority();
        std::vector<test::ServedCourse> courses;
        for (const std::int64_t id : {1, 2}) {
            courses.push_back(
                test::inventCourse(id, {.students = 3, .assignments = 2}, systemNow()));
            courses.back().course.name = "Biology";
        }
        test::serve(canvas, courses);
        core.connectTo(canvas.address());
    }

    [[nodiscard]] bool show(std::int64_t id) {
        controller.select(CourseSelection{id});
        return test::until([&] {
            return controller.roster().state == RosterView::State::shown && !controller.isLoading();
        });
    }
};

TEST_F(SameTitleTest, AFilterAndASortBelongToTheirCourse) {
    ASSERT_TRUE(test::until([&] { return controller.courses().known().size() == 2; }));
    ASSERT_TRUE(show(1));
    auto *filter = window.roster()->findChild<QLineEdit *>();
    filter->setText(QStringLiteral("nobody"));
    EXPECT_EQ(table().shownCount(), 0);
    controller.refreshRoster();
    ASSERT_TRUE(test::until([&] { return !controller.isLoading(); }));
    EXPECT_EQ(filter->text(), QStringLiteral("nobody")) << "the same course";
    ASSERT_TRUE(show(2));
    EXPECT_EQ(controller.roster().title, "Biology");
    EXPECT_EQ(filter->text(), QString());
    const std::size_t all = table().roster().count(RosterChip::everyone);
    EXPECT_EQ(all, 3U);
    EXPECT_EQ(table().query(), RosterQuery{});
    table().setQuery({.chip = RosterChip::everyone});
    Q_EMIT table().horizontalHeader()->sectionClicked(RosterModel::student);
    ASSERT_TRUE(show(1));
    EXPECT_EQ(filter->text(), QStringLiteral("nobody"));
    ASSERT_TRUE(show(2));
    EXPECT_EQ(
        table().query(), (RosterQuery{.chip = RosterChip::everyone, .sort = RosterSort::student}));
    core.secrets.secrets.clear();
    controller.connectionDidChange();
    ASSERT_TRUE(
        test::until([&] { return controller.roster().state == RosterView::State::notConnected; }));
    core.connectTo(canvas.address());
    controller.connectionDidChange();
    ASSERT_TRUE(test::until([&] { return controller.courses().known().size() == 2; }));
    ASSERT_TRUE(show(1));
    EXPECT_EQ(table().query(), RosterQuery{}) << "perhaps another account";
}

TEST_F(SameTitleTest, TheNamesOfATermBeingScoredAreShownFirst) {
    const QString submissions = QStringLiteral("/api/v1/courses/2/students/submissions");
    canvas.hold(submissions);
    ASSERT_TRUE(test::until([&] { return controller.dashboard().progress().done == 1; }));
    const auto cards = [this] {
        std::vector<std::string> names;
        for (const CourseCard *card : window.findChildren<CourseCard *>()) {
            if (card->isVisible())
                names.push_back(card->accessibleName().toStdString());
        }
        return names;
    };
    const std::string waiting = "Biology. Being scored. Opens the course.";
    EXPECT_THAT(cards(), testing::ElementsAre(waiting, waiting));
    canvas.release();
    ASSERT_TRUE(test::until([&] { return !controller.dashboard().progress().running; }));
    EXPECT_THAT(cards(), testing::Each(testing::HasSubstr("students")));
}

TEST_F(SameTitleTest, AFailedRosterOffersToTryAgain) {
    int passes = 0;
    QObject::connect(
        &controller, &MainWindowController::passDidEnd, &controller, [&] { ++passes; });
    // Once for the pass, and once for the roster.
    canvas.plan(
        QStringLiteral("/api/v1/courses/1/enrollments"), {{.status = 404}, {.status = 404}});
    ASSERT_TRUE(test::until([&] { return passes == 1; }));
    controller.select(CourseSelection{1});
    ASSERT_TRUE(
        test::until([&] { return controller.roster().state == RosterView::State::failed; }));
    QPushButton *again = button(*window.roster(), "Try Again");
    EXPECT_TRUE(again->isVisible());
    again->click();
    ASSERT_TRUE(test::until([&] { return controller.roster().state == RosterView::State::shown; }));
    EXPECT_FALSE(again->isVisible());
}

} // namespace
} // namespace ellwynd
