#include "support/accessibility.h"
#include "support/mainwindow.h"
#include "ui/settings/settingswindow.h"
#include "ui/welcome/welcomewindow.h"

#include <QAccessible>

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using testing::IsEmpty;

struct AccessibilityTest : test::MainWindowTest {
    /// As while a screen reader runs: only then do views announce that their rows have changed.
    AccessibilityTest() { QAccessible::setActive(true); }
    ~AccessibilityTest() override { QAccessible::setActive(false); }

    /// Looks at the window in front, and closes it unless it is the main one.
    void look(const std::string &what) {
        QApplication::processEvents();
        QWidget *front = &window;
        for (QWidget *open : QApplication::topLevelWidgets()) {
            if (open->isVisible() && open->isWindow() && open != &window)
                front = open;
        }
        EXPECT_THAT(test::unnamedElements(*front), IsEmpty()) << what;
        EXPECT_THAT(test::unreachableControls(*front), IsEmpty()) << what;
        if (front != &window) {
            ++others;
            front->close();
        }
    }

    /// Windows looked at beside the main one.
    int others = 0;
};

TEST_F(AccessibilityTest, EveryControlOfEveryWindowHasANameAndIsReachedByTab) {
    look("dashboard");
    controller.select(TermSelection{9001});
    look("term");
    openCourse(900101);
    look("course");
    table().selectStudents({{900101, 5001}});
    look("student");
    table().selectStudents({{900101, 5001}, {900101, 5002}});
    look("students");
    for (const char *command :
         {"Missing Work by Assignment…", "Risk Thresholds…", "Icon…", "Copy Course Setup…",
          "Ellwynd Help", "What's New in Ellwynd", "About Ellwynd"}) {
        action(QString::fromUtf8(command))->trigger();
        look(command);
    }
    window.settings().setUpdateChecksAvailable(true);
    for (int page = SettingsWindow::general; page <= SettingsWindow::sync; ++page) {
        window.settings().open(SettingsWindow::Page(page));
        look("settings page " + std::to_string(page));
    }
    for (const std::int64_t step : {WelcomeWindow::introduction, WelcomeWindow::choice}) {
        defaults.set(preferences::onboardingStep, step);
        (new WelcomeWindow(defaults, core.check, appearance))->show();
        look("welcome step " + std::to_string(step));
    }
    EXPECT_EQ(others, 7 + 8 + 2);
    controller.select(DashboardSelection{});
    window.showUpdate(QStringLiteral("2.0"));
    look("an update");
}

} // namespace
} // namespace ellwynd
