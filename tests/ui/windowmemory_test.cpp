// What the window remembers between runs, and what it keeps in memory.
#include "support/mainwindow.h"
#include "ui/details/studentdetails.h"
#include "ui/sidebar/sidebar.h"

#include <QScreen>

namespace ellwynd {
namespace {

using test::CourseWindowTest;
using test::MainWindowTest;

TEST_F(MainWindowTest, OpenTermsAreRemembered) {
    QTreeView *sidebar = window.findChild<Sidebar *>()->list();
    EXPECT_TRUE(sidebar->isExpanded(sidebar->model()->index(1, 0)));
    sidebar->setExpanded(sidebar->model()->index(1, 0), false);
    sidebar->setExpanded(sidebar->model()->index(5, 0), true);
    EXPECT_THAT(
        defaults.value(preferences::sidebarExpandedTerms),
        testing::IsSupersetOf({-9001, 9002, 9103}));
    openCourse(900102);
    EXPECT_FALSE(sidebar->isExpanded(sidebar->model()->index(1, 0)));
    // Another machine has expanded the first term and collapsed the second.
    defaults.set(preferences::sidebarExpandedTerms, IDList{-9002, 9001});
    EXPECT_TRUE(sidebar->isExpanded(sidebar->model()->index(1, 0)));
    EXPECT_FALSE(sidebar->isExpanded(sidebar->model()->index(2, 0)));
    EXPECT_EQ(defaults.value(preferences::sidebarExpandedTerms), (IDList{-9002, 9001}))
        << "showing it saves nothing";
}

TEST_F(MainWindowTest, ADoubleClickOpensATermTheFirstTime) {
    // A second passes with every look at the clock.
    static int looks = 0;
    const auto clock = [] { return systemNow() + std::chrono::seconds(++looks); };
    MainWindowController ticking{defaults,    core.connector, core.stores,
                                 core.trends, core.sinks,     clock};
    ticking.refresh();
    Sidebar sidebar(ticking, defaults, appearance);
    sidebar.resize(240, 600);
    sidebar.show();
    const auto term = [&] { return sidebar.list()->model()->index(4, 0); };
    ASSERT_FALSE(sidebar.list()->isExpanded(term()));
    const QPoint at = sidebar.list()->visualRect(term()).center();
    // The first click selects the term, and its roster is shown.
    QTest::mouseClick(sidebar.list()->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(sidebar.list()->viewport(), Qt::LeftButton, {}, at);
    EXPECT_TRUE(sidebar.list()->isExpanded(term()));
}

TEST_F(CourseWindowTest, TheWindowRestoresItsGeometry) {
    auto *details = window.findChild<StudentDetails *>();
    action("Hide Student Details")->trigger();
    EXPECT_FALSE(details->isVisible());
    EXPECT_EQ(defaults.object(preferences::studentDetailsHidden.name), PreferenceValue(true))
        << "saved at once, not at exit";
    window.setGeometry(30, 40, 1100, 650);
    EXPECT_TRUE(test::until(
        [&] { return defaults.object(preferences::mainWindowGeometry.name).has_value(); }));
    window.setGeometry(50, 60, 740, 660);
    window.hide();
    const MainWindow next{controller, defaults,           core.stores, core.check,
                          sync,       core.notifications, appearance};
    EXPECT_EQ(next.geometry(), QRect(50, 60, 740, 660));
    EXPECT_TRUE(next.findChild<StudentDetails *>()->isHidden());
    const QRect desktop = QGuiApplication::primaryScreen()->availableGeometry();
    defaults.set(preferences::mainWindowGeometry, std::string("9000 -9000 740 660 maximized"));
    const MainWindow found{controller, defaults,           core.stores, core.check,
                           sync,       core.notifications, appearance};
    EXPECT_TRUE(desktop.contains(found.geometry())) << "the saved screen does not exist";
    EXPECT_TRUE(found.isMaximized());
    defaults.set(preferences::mainWindowGeometry, std::string("1 2 -3 x"));
    const MainWindow fresh{controller, defaults,           core.stores, core.check,
                           sync,       core.notifications, appearance};
    EXPECT_EQ(fresh.size(), QSize(1280, 800)) << "the default size";
}

TEST_F(MainWindowTest, AnyNumberOfRefreshesLeavesTheSameObjects) {
    const auto objects = [this] {
        Q_EMIT controller.errorDidOccur(CanvasError(CanvasError::Kind::timedOut));
        for (const Selection &selection :
             {Selection(CourseSelection{900101}), Selection(TermSelection{9001}),
              Selection(CourseSelection{900102}), Selection(DashboardSelection{})}) {
            controller.select(selection);
            controller.refresh();
            controller.computerDidWake();
            QApplication::processEvents();
        }
        // What is deleted later is gone.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return std::pair{
            window.findChildren<QObject *>().size(), QApplication::topLevelWidgets().size()};
    };
    objects();
    const auto before = objects();
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(objects(), before) << i;
}

} // namespace
} // namespace ellwynd
