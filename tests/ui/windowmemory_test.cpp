// What the window remembers between runs.
#include "support/mainwindow.h"
#include "support/until.h"
#include "ui/details/studentdetails.h"
#include "ui/sidebar/sidebar.h"

#include <QAction>
#include <QScreen>

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using test::MainWindowTest;
using testing::ElementsAre;

TEST_F(MainWindowTest, OpenTermsAreRemembered) {
    QTreeView *sidebar = window.findChild<Sidebar *>()->list();
    EXPECT_TRUE(sidebar->isExpanded(sidebar->model()->index(1, 0)));
    sidebar->setExpanded(sidebar->model()->index(1, 0), false);
    sidebar->setExpanded(sidebar->model()->index(5, 0), true);
    EXPECT_THAT(defaults.value(preferences::sidebarExpandedTerms), ElementsAre(9002, 9103));
    openCourse(900102);
    EXPECT_FALSE(sidebar->isExpanded(sidebar->model()->index(1, 0)));
}

TEST_F(MainWindowTest, TheWindowRestoresItsGeometry) {
    openCourse(900101);
    auto *details = window.findChild<StudentDetails *>();
    action(QStringLiteral("Hide Student Details"))->trigger();
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

} // namespace
} // namespace ellwynd
