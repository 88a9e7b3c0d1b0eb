// Runs with its own session bus.
#include "platform/session/widgettimelines.h"

#include <QDBusConnection>
#include <QTest>

#include <gtest/gtest.h>

namespace ellwynd {
namespace {

TEST(WidgetTimelines, SeveralRequestsCauseOneReload) {
    ASSERT_TRUE(QDBusConnection::sessionBus().isConnected());
    int reloads = 0;
    int reloadsOfDropped = 0;
    const auto handle = widgetTimelines::observe([&] { ++reloads; });
    {
        const auto dropped = widgetTimelines::observe([&] { ++reloadsOfDropped; });
    }
    for (int i = 0; i < 5; ++i)
        widgetTimelines::reloadAll();
    EXPECT_TRUE(QTest::qWaitFor([&] { return reloads > 0; }));
    EXPECT_EQ(reloads, 1);
    widgetTimelines::reloadAll();
    EXPECT_TRUE(QTest::qWaitFor([&] { return reloads > 1; }));
    EXPECT_EQ(reloads, 2);
    EXPECT_EQ(reloadsOfDropped, 0);
}

} // namespace
} // namespace ellwynd
