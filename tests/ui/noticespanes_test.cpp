#include "base/files.h"
#include "platform/folders/directories.h"
#include "support/mainwindow.h"
#include "ui/settings/notificationspane.h"
#include "ui/settings/widgetspane.h"
#include "windowtexts.h"

#include <QCheckBox>

namespace ellwynd {
namespace {

using test::says;
using testing::StartsWith;

using Status = UserNotifications::AuthorizationStatus;

struct NoticesPanesTest : test::WindowTest {
    test::MemoryNotifications &system = core.notifications;
};

const auto turnedOff = StartsWith("macOS has notifications turned off for Ellwynd. Enable them in "
                                  "System Settings ▸ Notifications.");

TEST_F(NoticesPanesTest, TheCheckBoxesSetThePreferences) {
    NotificationsPane pane(defaults, system, appearance);
    pane.show();
    const auto boxes = pane.findChildren<QCheckBox *>();
    ASSERT_EQ(boxes.size(), 2);
    EXPECT_FALSE(boxes[0]->isChecked());
    EXPECT_FALSE(boxes[1]->isEnabled()) << "needs the first";
    boxes[0]->click();
    EXPECT_TRUE(defaults.value(preferences::movementNotifications));
    ASSERT_TRUE(boxes[1]->isEnabled());
    boxes[1]->click();
    EXPECT_TRUE(defaults.value(preferences::notifyWhileActive));
    // The pane follows changes made elsewhere, and a disabled box keeps its value.
    defaults.set(preferences::movementNotifications, false);
    EXPECT_FALSE(boxes[0]->isChecked());
    EXPECT_FALSE(boxes[1]->isEnabled());
    EXPECT_TRUE(boxes[1]->isChecked());
}

TEST_F(NoticesPanesTest, DeniedNotificationsAreReportedWheneverThePaneIsShown) {
    NotificationsPane pane(defaults, system, appearance);
    pane.show();
    EXPECT_FALSE(says(pane, turnedOff));
    system.status = Status::denied;
    pane.hide();
    pane.show();
    EXPECT_TRUE(says(pane, turnedOff));
    pane.hide();
    system.slow = true;
    pane.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&pane));
    system.status = Status::authorized;
    system.answer();
    EXPECT_FALSE(says(pane, turnedOff));

    // The teacher switched to the system's settings and back.
    system.status = Status::denied;
    QWidget elsewhere;
    elsewhere.show();
    elsewhere.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&elsewhere));
    system.answer();
    EXPECT_FALSE(says(pane, turnedOff));
    pane.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&pane));
    system.answer();
    EXPECT_TRUE(says(pane, turnedOff));
}

TEST_F(NoticesPanesTest, AnAnswerMayArriveAfterThePaneIsDestroyed) {
    system.slow = true;
    auto pane = std::make_unique<NotificationsPane>(defaults, system, appearance);
    pane->show();
    pane.reset();
    ASSERT_FALSE(system.pendingQueries.empty());
    system.answer();
}

TEST_F(NoticesPanesTest, WidgetsAreStartedNowAndAtLogin) {
    using Answer = widgetService::Answer;
    Answer answer = Answer::notRunning;
    std::optional<std::string> failure;
    std::vector<QString> started;
    const WidgetsPane::Process process{
        .show = [&](const std::function<void(Answer)> &answered) { answered(answer); },
        .start =
            [&](const QString &program) {
                started.push_back(program);
                return failure;
            }};
    WidgetsPane pane(defaults, appearance, process);
    pane.show();
    auto *hideNames = pane.findChild<QCheckBox *>();
    hideNames->click();
    EXPECT_TRUE(defaults.value(preferences::widgetsHideCourseNames));
    defaults.remove(preferences::widgetsHideCourseNames.name);
    EXPECT_FALSE(hideNames->isChecked());

    auto *show = pane.findChild<QPushButton *>();
    EXPECT_EQ(show->text(), QStringLiteral("Show Widgets"));
    failure = "/opt/ellwynd-widget could not be started: why";
    show->click();
    EXPECT_TRUE(says(pane, StartsWith("The widgets couldn’t be started. " + *failure)));
    failure.reset();
    show->click();
    EXPECT_TRUE(says(pane, StartsWith("The widgets were started.")));
    EXPECT_THAT(
        started,
        testing::Each(QApplication::applicationDirPath() + QStringLiteral("/ellwynd-widget")));
    const std::pair<Answer, const char *> answers[] = {
        {Answer::inFront, "The widgets are in front of other windows"},
        {Answer::behind, "The widgets are shown. This desktop does not let them"},
        {Answer::silent, "The widgets are running, but do not answer."}};
    for (const auto &[each, text] : answers) {
        answer = each;
        show->click();
        EXPECT_TRUE(says(pane, StartsWith(text)));
    }
    EXPECT_EQ(started.size(), 2U) << "only when they were not running";
    answer = Answer::inFront;
    defaults.set(preferences::sampleData, true);
    const auto sample = testing::EndsWith("the sample college’s are not written for widgets.");
    show->click();
    EXPECT_TRUE(says(pane, sample));
    defaults.set(preferences::sampleWidgets, true);
    show->click();
    EXPECT_FALSE(says(pane, sample));

    // The desktop starts the widgets at login, from an entry in the autostart folder.
    QCheckBox *withSession = pane.findChildren<QCheckBox *>().at(1);
    const auto entry = directories::autostart() / "com.varnok.Ellwynd.Widget.desktop";
    EXPECT_FALSE(withSession->isChecked());
    withSession->click();
    EXPECT_TRUE(std::filesystem::exists(entry));
    pane.hide();
    files::replace(entry, *files::read(entry, 10'000) + "Hidden=true\n");
    pane.show();
    EXPECT_FALSE(withSession->isChecked()) << "switched off in the desktop's settings";
    withSession->click();
    EXPECT_TRUE(withSession->isChecked());
    withSession->click();
    EXPECT_FALSE(std::filesystem::exists(entry));
    std::filesystem::create_directories(entry / "not a file");
    withSession->click();
    EXPECT_TRUE(says(pane, StartsWith("com.varnok.Ellwynd.Widget.desktop couldn’t be")));
    EXPECT_FALSE(withSession->isChecked());
    std::filesystem::remove_all(entry);
}

} // namespace
} // namespace ellwynd
