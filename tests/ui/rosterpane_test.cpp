#include "support/fakecanvas.h"
#include "support/mainwindow.h"
#include "support/servedcourse.h"
#include "support/until.h"

#include <QLineEdit>
#include <QTest>

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

TEST_F(SameTitleTest, ChangingTheCourseClearsTheFilter) {
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
    EXPECT_EQ(table().shownCount(), 3);
}

} // namespace
} // namespace ellwynd
