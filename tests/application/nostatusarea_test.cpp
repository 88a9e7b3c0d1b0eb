// A desktop without a status area. A test program of its own: Qt looks for the area once.
#include "application.h"
#include "support/loneservice.h"
#include "support/memorynotifications.h"
#include "support/memorysecrets.h"
#include "support/temporaryfolder.h"
#include "support/until.h"
#include "ui/mainwindow/mainwindow.h"

#include <QSystemTrayIcon>

#include <gtest/gtest.h>

namespace ellwynd {
namespace {

TEST(NoStatusArea, ClosingTheWindowEndsTheProgram) {
    ASSERT_FALSE(QSystemTrayIcon::isSystemTrayAvailable());
    const test::TemporaryFolder folder;
    test::MemorySecrets secrets;
    test::LoneService service;
    Application program(
        ApplicationEnvironment{
            .launchArguments =
                {{"SampleData", true},
                 {"KeepRunningInBackground", true},
                 {"StartInBackground", true}},
            .preferencesFile = folder.path() / "Preferences.json",
            .data = folder.path(),
            .state = folder.path(),
            .widgetContainer = folder.path() / "widgets",
            .secrets = secrets.shared(),
            .notifications = std::make_unique<test::MemoryNotifications>()},
        service);
    program.launch({});
    EXPECT_TRUE(test::until([&] { return program.window().isVisible(); }))
        << "nothing else would open it";
    EXPECT_TRUE(program.window().close()) << "Qt ends the program after its last window";
}

} // namespace
} // namespace ellwynd
