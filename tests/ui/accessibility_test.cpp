#include "support/accessibility.h"
#include "support/mainwindow.h"
#include "ui/settings/settingswindow.h"
#include "ui/welcome/welcomewindow.h"

#include <QLabel>

namespace ellwynd {
namespace {

using testing::IsEmpty;

struct AccessibilityTest : test::MainWindowTest {
    /// Checks the topmost window, and closes it unless it is the main one.
    void check(const std::string &what) {
        QApplication::processEvents();
        QWidget *front = &window;
        for (QWidget *open : QApplication::topLevelWidgets()) {
            if (open->isVisible() && open->isWindow() && open != &window)
                front = open;
        }
        EXPECT_THAT(test::unnamedElements(*front), IsEmpty()) << what;
        EXPECT_THAT(test::unreachableControls(*front), IsEmpty()) << what;
        // Names and titles from Canvas are never markup.
        for (const QLabel *label : front->findChildren<QLabel *>())
            EXPECT_TRUE(label->text().isEmpty() || label->textFormat() == Qt::PlainText)
                << what << ": " << label->text().toStdString();
        if (front != &window) {
            ++checkedWindows;
            front->close();
        }
    }

    /// How many windows other than the main one were checked.
    int checkedWindows = 0;
};

TEST_F(AccessibilityTest, EveryControlOfEveryWindowHasANameAndIsReachedByTab) {
    check("dashboard");
    controller.select(TermSelection{9001});
    check("term");
    openCourse(900101);
    check("course");
    table().selectStudents({{900101, 5001}});
    check("student");
    table().selectStudents({{900101, 5001}, {900101, 5002}});
    check("students");
    action("Mark as Contacted")->trigger();
    EXPECT_NE(note(), "");
    check("a note with a button");
    action("Find…")->trigger();
    check("find");
    for (const char *command :
         {"Missing Work by Assignment…", "Risk Thresholds…", "Icon…", "Copy Course Setup…",
          "Look Back…", "Print…", "Write…", "Ellwynd Help", "What's New in Ellwynd",
          "About Ellwynd"}) {
        action(command)->trigger();
        check(command);
    }
    window.settings().setUpdateChecksAvailable(true);
    for (int page = SettingsWindow::general; page <= SettingsWindow::sync; ++page) {
        window.settings().open(SettingsWindow::Page(page));
        check("settings page " + std::to_string(page));
    }
    for (const std::int64_t step : {WelcomeWindow::introduction, WelcomeWindow::choice}) {
        defaults.set(preferences::onboardingStep, step);
        (new WelcomeWindow(defaults, core.check, controller, appearance))->show();
        check("welcome step " + std::to_string(step));
    }
    EXPECT_EQ(checkedWindows, 10 + 8 + 2);
    controller.select(DashboardSelection{});
    window.showUpdate(QStringLiteral("2.0"));
    check("an update");
}

} // namespace
} // namespace ellwynd
