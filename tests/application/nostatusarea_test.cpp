// A desktop without a status area. A test program of its own: Qt looks for the area once.
#include "support/loneservice.h"
#include "support/programfolder.h"
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
    test::LoneService service;
    const PreferenceMap arguments{
        {"SampleData", true}, {"KeepRunningInBackground", true}, {"StartInBackground", true}};
    Application program(test::environmentIn(folder.path(), arguments), service);
    program.launch({});
    EXPECT_TRUE(test::until([&] { return program.window().isVisible(); }))
        << "nothing else would open it";
    EXPECT_TRUE(program.window().close()) << "Qt ends the program after its last window";
}

} // namespace
} // namespace ellwynd
