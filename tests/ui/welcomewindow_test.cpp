#include "app/dashboard/dashboardtexts.h"
#include "support/fakecanvas.h"
#include "support/mainwindow.h"
#include "support/servedcourse.h"
#include "ui/welcome/stepdots.h"
#include "ui/welcome/welcomewindow.h"
#include "windowtexts.h"

#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>

namespace ellwynd {
namespace {

using test::says;
using test::until;

struct WelcomeWindowTest : test::WindowTest {
    MainWindowController controller{defaults, core.connector, core.stores, core.trends, core.sinks};
    test::FakeCanvas canvas;
    QPointer<WelcomeWindow> window;
    std::vector<std::string> announced;
    int connections = 0;
    int samples = 0;

    void SetUp() override {
        test::trustAuthority();
        canvas.answerWith([](const test::FakeRequest &request) {
            if (request.headers.value("authorization") == "Bearer secret-token")
                return test::FakeReply{.body = R"({"name":"Ana <b>Ruiz</b>"})"};
            return test::FakeReply{.status = 401};
        });
    }

    void TearDown() override {
        delete window;
        EXPECT_TRUE(until([&] {
            return !controller.isLoading() && core.session.requestLimiter().inFlight() == 0;
        }));
    }

    void open() {
        window = new WelcomeWindow(defaults, core.check, controller, appearance);
        QObject::connect(
            window, &WelcomeWindow::announcementRequested, window,
            [this](const QString &text) { announced.push_back(text.toStdString()); });
        QObject::connect(
            window, &WelcomeWindow::connectionDidChange, window, [this] { ++connections; });
        QObject::connect(window, &WelcomeWindow::sampleRequested, window, [this] { ++samples; });
        window->show();
        window->activateWindow();
        QApplication::processEvents();
    }

    static void type(const std::string &text) {
        QTest::keyClicks(QApplication::focusWidget(), QString::fromStdString(text));
    }

    [[nodiscard]] QLineEdit *field(int index) const {
        return window->findChildren<QLineEdit *>().at(index);
    }

    [[nodiscard]] std::int64_t saved() const { return defaults.value(preferences::onboardingStep); }
};

TEST_F(WelcomeWindowTest, IsDueUntilFinishedOrConnected) {
    for (const auto &[step, connected, due] : std::vector<std::tuple<PreferenceValue, bool, bool>>{
             {std::int64_t{2}, false, true},
             {std::int64_t{2}, true, false},
             {std::int64_t{3}, false, false},
             {std::int64_t{99}, false, false},
             {std::int64_t{-1}, false, true},
             {std::string("two"), false, true}}) {
        defaults.set("Onboarding.step", step);
        EXPECT_EQ(WelcomeWindow::isDue(defaults, connected), due) << toJSON(step);
    }
    defaults.set(preferences::sampleData, true);
    EXPECT_FALSE(WelcomeWindow::isDue(defaults, false));
}

TEST_F(WelcomeWindowTest, ConnectingNeedsOnlyTheKeyboard) {
    open();
    EXPECT_EQ(saved(), WelcomeWindow::introduction);
    press(Qt::Key_Return);
    EXPECT_EQ(window->step(), WelcomeWindow::choice);
    ASSERT_EQ(QApplication::focusWidget(), field(0));

    // What was copied from the browser is offered as an address, and not completed silently.
    type("canvas.school.edu/courses/4021?x=1");
    EXPECT_NE(button(*window, "Use https://canvas.school.edu"), nullptr);
    press(Qt::Key_Return);
    EXPECT_EQ(field(0)->text(), QStringLiteral("https://canvas.school.edu"));
    EXPECT_EQ(button(*window, "Use https://canvas.school.edu"), nullptr);
    EXPECT_EQ(QApplication::focusWidget(), field(1)) << "the token is next";
    field(0)->clear();
    field(0)->setFocus();

    // Each failure has its own message, and the fields keep their text.
    type("localhost");
    press(Qt::Key_Return);
    EXPECT_TRUE(until([&] { return announced.size() == 1; }));
    EXPECT_THAT(announced.back(), testing::HasSubstr("Enter your Canvas address first"));
    EXPECT_EQ(field(0)->text(), QStringLiteral("localhost"));
    field(0)->clear();
    type(canvas.address());
    press(Qt::Key_Return);
    EXPECT_TRUE(until([&] { return announced.size() == 2; }));
    EXPECT_TRUE(says(*window, "Paste your Canvas access token first."));
    press(Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget(), field(1));
    EXPECT_EQ(field(1)->echoMode(), QLineEdit::Password);
    type("wrong");
    press(Qt::Key_Return);
    EXPECT_TRUE(window->findChild<QProgressBar *>()->isVisible());
    EXPECT_FALSE(button(*window, "Connect")->isEnabled());
    EXPECT_TRUE(says(*window, "Checking " + canvas.address() + "…"));
    EXPECT_TRUE(until([&] { return announced.size() == 3; }));
    const CanvasError rejected(CanvasError::Kind::unauthorized);
    EXPECT_TRUE(says(*window, rejected.errorDescription() + "\n" + rejected.recoverySuggestion()));
    EXPECT_EQ(announced.back(), "Connection test failed. Canvas rejected the access token.");
    EXPECT_EQ(field(1)->text(), QStringLiteral("wrong"));
    EXPECT_EQ(QApplication::focusWidget(), field(1));

    field(1)->clear();
    type("secret-token");
    core.secrets.failure.emplace(KeychainError::locked, "The keyring is locked.");
    press(Qt::Key_Return);
    EXPECT_TRUE(until([&] { return announced.size() == 4; }));
    EXPECT_TRUE(says(
        *window,
        "Keychain error (3): The keyring is locked.\n"
        "Unlock your keyring, and try again."));
    EXPECT_EQ(window->step(), WelcomeWindow::choice);
    EXPECT_TRUE(core.secrets.secrets.empty());
    EXPECT_EQ(defaults.value(preferences::canvasBaseURL), "");
    EXPECT_EQ(connections, 0);

    core.secrets.failure.reset();
    EXPECT_EQ(field(1)->text(), QStringLiteral("secret-token"));
    press(Qt::Key_Return);
    EXPECT_TRUE(until([&] { return announced.size() == 5; }));
    EXPECT_EQ(connections, 1);
    EXPECT_EQ(window->step(), WelcomeWindow::finished);
    EXPECT_TRUE(says(*window, "Connected as Ana <b>Ruiz</b>"));
    EXPECT_EQ(defaults.value(preferences::canvasBaseURL), canvas.address());
    EXPECT_EQ(core.secrets.secrets.begin()->second, "secret-token");
    EXPECT_EQ(saved(), WelcomeWindow::finished);
    press(Qt::Key_Return);
    EXPECT_FALSE(window && window->isVisible());
    EXPECT_FALSE(WelcomeWindow::isDue(defaults, false));

    // Opened again, it begins at the first step and stays finished.
    delete window;
    open();
    EXPECT_EQ(window->step(), WelcomeWindow::introduction);
    EXPECT_EQ(saved(), WelcomeWindow::finished);
    EXPECT_EQ(field(0)->text().toStdString(), canvas.address());
}

TEST_F(WelcomeWindowTest, TheLastPageSaysWhoNeedsAttention) {
    const auto course = test::inventCourse(4021, {.students = 30, .assignments = 3}, systemNow());
    canvas.answerWith(nullptr);
    test::serve(canvas, std::span(&course, 1));
    canvas.plan(QStringLiteral("/api/v1/users/self"), {{.body = R"({"name":"Ana Ruiz"})"}});
    defaults.set(preferences::onboardingStep, std::int64_t{WelcomeWindow::choice});
    open();
    QObject::connect(
        window, &WelcomeWindow::connectionDidChange, &controller,
        &MainWindowController::connectionDidChange);
    canvas.hold(QStringLiteral("/api/v1/courses/4021/students/submissions"));
    field(0)->setText(QString::fromStdString(canvas.address()));
    field(1)->setFocus();
    type("secret-token");
    press(Qt::Key_Return);
    ASSERT_TRUE(until([&] { return controller.dashboard().progress().running; }));
    EXPECT_EQ(window->step(), WelcomeWindow::finished);
    EXPECT_TRUE(says(*window, *waitLine(controller.dashboard())));
    EXPECT_FALSE(button(*window, "Show My Courses")->isEnabled());
    canvas.release();
    ASSERT_TRUE(until([&] { return controller.dashboard().shownTerm() != nullptr; }));
    const std::int64_t flagged = controller.dashboard().shownTerm()->flaggedStudents;
    ASSERT_GT(flagged, 1);
    EXPECT_TRUE(until([&] { return !controller.isLoading(); }));
    EXPECT_EQ(
        std::ranges::count(
            canvas.requests, QStringLiteral("/api/v1/courses"), &test::FakeRequest::path),
        1)
        << "the change of the address and the saving are one refresh";
    EXPECT_TRUE(says(*window, std::to_string(flagged) + " students need attention in Fall"));
    ASSERT_EQ(QApplication::focusWidget(), button(*window, "Show the Students"));
    press(Qt::Key_Return);
    EXPECT_FALSE(window && window->isVisible());
    EXPECT_EQ(controller.selection(), Selection(TermSelection{9001}));
}

TEST_F(WelcomeWindowTest, ClosingDuringTheTestSavesNothing) {
    defaults.set(preferences::onboardingStep, std::int64_t{WelcomeWindow::choice});
    for (const bool destroyed : {false, true}) {
        canvas.requests.clear();
        canvas.hold(QStringLiteral("/api/v1/users/self"));
        open();
        type(canvas.address());
        field(1)->setText(QStringLiteral("secret-token"));
        press(Qt::Key_Return);
        EXPECT_TRUE(until([&] { return !canvas.requests.empty(); }));
        if (destroyed)
            delete window;
        else
            QTest::keyClick(window, Qt::Key_Escape);
        canvas.release();
        for (int i = 0; i < 20; ++i)
            QApplication::processEvents(QEventLoop::AllEvents, 10);
        EXPECT_TRUE(core.secrets.secrets.empty());
        EXPECT_EQ(saved(), WelcomeWindow::choice) << "it opens at this step again";
    }
}

TEST_F(WelcomeWindowTest, OffersTheSampleCollegeAndBack) {
    open();
    press(Qt::Key_Return);
    auto *dots = window->findChild<StepDots *>();
    EXPECT_EQ(dots->accessibleName(), QStringLiteral("Step 2 of 3"));
    button(*window, "Explore the Sample College")->setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(samples, 1);
    EXPECT_EQ(connections, 0);
    EXPECT_TRUE(announced.empty()) << "nothing was checked";
    button(*window, "Back")->setFocus();
    press(Qt::Key_Space);
    EXPECT_EQ(window->step(), WelcomeWindow::introduction);
    EXPECT_EQ(dots->accessibleName(), QStringLiteral("Step 1 of 3"));
    press(Qt::Key_Escape);
    EXPECT_EQ(saved(), WelcomeWindow::introduction);
    EXPECT_TRUE(WelcomeWindow::isDue(defaults, false));
}

} // namespace
} // namespace ellwynd
