// A controller on a desktop without a secret service; see support/with-bus.
#include "app/mainwindowcontroller.h"
#include "support/temporaryfolder.h"
#include "support/until.h"

#include <QDBusConnection>

#include <gtest/gtest.h>

namespace ellwynd {
namespace {

TEST(NoKeyring, IsReportedAsUnavailableAndNotASignOut) {
    ASSERT_TRUE(QDBusConnection::sessionBus().isConnected()) << "a bus, but nothing on it";
    const test::TemporaryFolder folder;
    UserDefaults defaults(folder.path() / "Preferences.json", {});
    AsyncTokenStore tokens(makeSecretStore());
    CanvasSession session;
    const Connector connector(defaults, tokens, session);
    Stores stores(defaults, folder.path() / "data");
    TrendSync trends(defaults);
    WidgetSnapshotWriter widgets(folder.path() / "widgets", [] {});
    MainWindowController controller(defaults, connector, stores, trends, {.widgets = widgets});

    defaults.set(preferences::canvasBaseURL, std::string("https://canvas.example.edu"));
    for (const char *refresh : {"first", "second"}) {
        controller.refresh();
        EXPECT_TRUE(test::until([&] { return !controller.isLoading(); }));
        EXPECT_EQ(controller.status(), "Keychain unavailable") << refresh;
        EXPECT_EQ(controller.roster().state, RosterView::State::nothingSelected) << refresh;
        EXPECT_FALSE(controller.isLoading()) << refresh;
    }
    EXPECT_EQ(defaults.value(preferences::canvasBaseURL), "https://canvas.example.edu");

    // The sample college needs no token.
    defaults.set(preferences::sampleData, true);
    controller.refresh();
    EXPECT_NE(controller.dashboard().shownTerm(), nullptr);
}

} // namespace
} // namespace ellwynd
