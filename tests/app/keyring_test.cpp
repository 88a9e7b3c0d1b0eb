// A connected controller with a real secret service that fails; see support/with-keyring.
#include "app/mainwindowcontroller.h"
#include "support/fakecanvas.h"
#include "support/instants.h"
#include "support/keyring.h"
#include "support/servedcourse.h"
#include "support/temporaryfolder.h"
#include "support/until.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

// A single test, since killing the keyring would affect any later test.
TEST(Keyring, TheRosterSurvivesALockedAndAKilledKeyring) {
    test::trustAuthority();
    test::FakeCanvas canvas;
    const auto course = test::inventCourse(4021, {.students = 30, .assignments = 3}, test::noon);
    test::serve(canvas, std::span(&course, 1));
    const test::TemporaryFolder folder;
    UserDefaults defaults(folder.path() / "Preferences.json", {});
    AsyncTokenStore tokens(makeSecretStore());
    CanvasSession session;
    const Connector connector(defaults, tokens, session);
    TokenStore(*makeSecretStore())
        .saveToken("secret-token", TokenStore::accountOf(canvas.address()));
    defaults.set(preferences::canvasBaseURL, canvas.address());

    Stores stores(defaults, folder.path() / "data");
    TrendSync trends(defaults);
    WidgetSnapshotWriter widgets(folder.path() / "widgets", [] {});
    MainWindowController controller(
        defaults, connector, stores, trends, {.widgets = widgets}, test::noonClock);
    std::vector<std::string> statuses;
    QObject::connect(&controller, &MainWindowController::statusDidChange, &controller, [&] {
        statuses.push_back(controller.status());
    });
    int errors = 0;
    QObject::connect(
        &controller, &MainWindowController::errorDidOccur, &controller, [&] { ++errors; });
    int passes = 0;
    QObject::connect(
        &controller, &MainWindowController::passDidEnd, &controller, [&] { ++passes; });
    const auto refreshed = [&] {
        const int before = passes;
        controller.refresh();
        return test::until([&] {
            return controller.status() == "1 course" && !controller.isLoading() && passes > before;
        });
    };
    controller.showCourse(4021);
    ASSERT_TRUE(refreshed());
    ASSERT_EQ(controller.roster().state, RosterView::State::shown);
    const SharedList<RiskRow> rows = controller.roster().rows;
    ASSERT_EQ(rows.size(), 30U);

    const auto refreshInVain = [&](const char *what) {
        const std::size_t requests = canvas.requests.size();
        statuses.clear();
        controller.refresh();
        EXPECT_TRUE(test::until([&] { return !statuses.empty() && !controller.isLoading(); }));
        EXPECT_EQ(controller.status(), "Keychain unavailable") << what;
        EXPECT_FALSE(controller.isLoading()) << what;
        EXPECT_EQ(controller.roster().state, RosterView::State::shown) << what;
        EXPECT_EQ(controller.roster().courseID, 4021) << what;
        EXPECT_EQ(controller.roster().rows, rows) << what;
        EXPECT_EQ(controller.courses().sidebarTerms().size(), 1U) << what;
        EXPECT_EQ(canvas.requests.size(), requests) << what;
    };
    test::lockKeyring();
    refreshInVain("locked");
    refreshInVain("still locked");
    test::unlockKeyring();
    EXPECT_TRUE(refreshed()) << "unlocked";
    test::killKeyring();
    // The keyring is gone, or the bus has restarted it locked.
    refreshInVain("killed");

    // The roster on screen can still be refreshed with the token read before.
    const std::size_t requests = canvas.requests.size();
    controller.refreshRoster();
    EXPECT_TRUE(test::until([&] { return !controller.isLoading(); }));
    EXPECT_EQ(canvas.requests.size(), requests + 3);
    EXPECT_EQ(controller.roster().rows, rows);
    EXPECT_EQ(controller.roster().staleReason, "");

    // The bus restarts the keyring on demand.
    test::unlockKeyring();
    EXPECT_TRUE(refreshed()) << "restarted and unlocked";

    EXPECT_THAT(statuses, testing::Not(testing::Contains("Not connected")));
    EXPECT_EQ(defaults.value(preferences::canvasBaseURL), canvas.address());
    EXPECT_EQ(errors, 0);
}

} // namespace
} // namespace ellwynd
