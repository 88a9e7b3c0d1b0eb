// The main window without a connection, and without being open.
#include "net/runtoend.h"
#include "support/fakecanvas.h"
#include "support/mainwindow.h"
#include "ui/connection/connectioncards.h"
#include "ui/mainwindow/statusitem.h"
#include "ui/settings/settingswindow.h"
#include "ui/sidebar/sidebar.h"

#include <QLineEdit>

namespace ellwynd {
namespace {

using test::MainWindowTest;

struct NotConnectedTest : test::MainWindowTest {
    test::FakeCanvas canvas;

    NotConnectedTest() : MainWindowTest(PreferenceMap{}) {
        test::trustAuthority();
        canvas.answerWith([](const test::FakeRequest &request) {
            return test::FakeReply{
                .body = request.path.endsWith(QStringLiteral("courses"))
                    ? "[]"
                    : R"({"name":"Ana Ruiz"})"};
        });
    }

    void SetUp() override {
        controller.refresh();
        ASSERT_TRUE(test::until([&] { return isOffered(); }));
    }
    void TearDown() override {
        EXPECT_TRUE(test::until([&] { return core.session.requestLimiter().inFlight() == 0; }));
    }

    [[nodiscard]] bool isOffered() const {
        const auto *cards = window.findChild<ConnectionCards *>();
        return cards != nullptr && cards->isVisible();
    }
};

TEST_F(NotConnectedTest, ThePageOffersTheSampleCollegeAndToConnect) {
    int samples = 0;
    QObject::connect(
        &window, &MainWindow::sampleSwitchRequested, &window, [&samples] { ++samples; });
    QTest::keyClick(button(window, "Explore the Sample College"), Qt::Key_Return);
    EXPECT_EQ(samples, 1);
    EXPECT_TRUE(canvas.requests.empty()) << "Return did not connect";
    EXPECT_EQ(statusItemText(controller.dashboard()), "Not scored yet");
    window.findChild<Sidebar *>()->list()->setFocus();
    EXPECT_EQ(controller.roster().state, RosterView::State::notConnected);
    const auto fields = window.findChild<ConnectionCards *>()->findChildren<QLineEdit *>();
    QTest::keyClicks(fields[0], QString::fromStdString(canvas.address()));
    QTest::keyClicks(fields[1], QStringLiteral("secret-token"));
    QTest::keyClick(fields[1], Qt::Key_Return);
    EXPECT_TRUE(test::until([&] { return !isOffered() && !controller.isLoading(); }));
    EXPECT_EQ(controller.status(), "0 courses");
    // After a sign-out it is offered again, without the token.
    static_cast<void>(runToEnd(core.check.signOut()));
    controller.connectionDidChange();
    EXPECT_TRUE(test::until([&] { return isOffered(); }));
    EXPECT_EQ(fields[1]->text(), QString());
}

TEST_F(MainWindowTest, ClosingHidesAProgramThatKeepsRunning) {
    window.settings().open(SettingsWindow::general);
    window.setKeepsRunning(true);
    EXPECT_FALSE(window.close());
    EXPECT_FALSE(window.isVisible());
    EXPECT_FALSE(window.settings().isVisible());
    window.activate({});
    EXPECT_TRUE(window.isVisible());
    window.setKeepsRunning(false);
    EXPECT_TRUE(window.close());
}

} // namespace
} // namespace ellwynd
