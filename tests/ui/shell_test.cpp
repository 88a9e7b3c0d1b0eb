#include "app/shell/appdelegate.h"
#include "app/updates/updater.h"
#include "support/accessibility.h"
#include "support/loneservice.h"
#include "support/mainwindow.h"
#include "ui/mainwindow/shellalerts.h"

#include <QLabel>
#include <QMessageBox>

namespace ellwynd {
namespace {

struct ShellTest : test::MainWindowTest {
    AppcastFeed feed{defaults, ""};
    Updater updater{defaults, feed, "1"};
    test::LoneService service;
    int started = 0;
    std::optional<std::string> failure;
    AppDelegate delegate{defaults, controller, service, updater, [this] {
                             ++started;
                             return failure;
                         }};
    ShellAlerts alerts{delegate, updater, &window};

    ShellTest() : MainWindowTest({}) {}
    void SetUp() override {}

    [[nodiscard]] QMessageBox *alert() const { return window.findChild<QMessageBox *>(); }

    /// Presses a button of the alert, which shows plain text, and waits until it is deleted.
    void press(const char *text) const {
        for (const QLabel *label : alert()->findChildren<QLabel *>())
            EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->text().toStdString();
        button(*alert(), text)->click();
        EXPECT_TRUE(QTest::qWaitFor([this] { return alert() == nullptr; })) << text;
    }
};

TEST_F(ShellTest, EnteringTheSampleCollegeNeedsConfirmation) {
    alerts.switchSampleMode();
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->text(), QStringLiteral("Explore with sample data?"));
    EXPECT_THAT(test::unnamedElements(*alert()), testing::IsEmpty());
    EXPECT_THAT(test::unreachableControls(*alert()), testing::IsEmpty());
    EXPECT_TRUE(alert()->informativeText().endsWith(
        QStringLiteral("left alone.\n\nLeave it the same way, from this menu.")));
    press("Cancel");
    EXPECT_EQ(started, 0);
    alerts.switchSampleMode();
    press("Restart in Sample Data");
    EXPECT_EQ(started, 1);
    EXPECT_TRUE(delegate.isSampleMode());

    alerts.switchSampleMode();
    EXPECT_EQ(alert(), nullptr) << "leaving asks nothing";
    EXPECT_EQ(started, 2);
    EXPECT_FALSE(delegate.isSampleMode());
}

TEST_F(ShellTest, AlertsShowPlainText) {
    failure = "<b>bold</b> <img src='https://elsewhere.example/'>";
    delegate.switchSampleMode();
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->informativeText().toStdString(), *failure);
    press("OK");

    Q_EMIT controller.errorDidOccur(CanvasError::network("<i>words of a server</i>"));
    ASSERT_NE(alert(), nullptr);
    press("OK");
}

TEST_F(ShellTest, TheBannerNamesTheUpdate) {
    const auto *banner = window.findChild<QLabel *>(QStringLiteral("updateBanner"));
    ASSERT_NE(banner, nullptr);
    EXPECT_FALSE(banner->isVisible());
    window.showUpdate(QStringLiteral("<b>2.0</b>"));
    EXPECT_TRUE(banner->isVisible());
    EXPECT_TRUE(banner->text().startsWith(QStringLiteral("Ellwynd <b>2.0</b> is available.")));
    EXPECT_EQ(banner->textFormat(), Qt::PlainText);
    window.showUpdate({});
    EXPECT_FALSE(banner->isVisible());
}

TEST_F(ShellTest, ActivatingRestoresAMinimisedWindow) {
    window.showMinimized();
    ASSERT_TRUE(window.isMinimized());
    window.activate(QStringLiteral("token"));
    EXPECT_FALSE(window.isMinimized());
    EXPECT_TRUE(window.isVisible());
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"))
        << "set only where the window system removes it again";
}

} // namespace
} // namespace ellwynd
