// Runs in a session with a bus of its own.
#include "platform/session/widgettimelines.h"

#include <QDBusConnection>
#include <QTest>

#include <gtest/gtest.h>

namespace ellwynd {
namespace {

TEST(WidgetTimelines, AReloadIsHeardOnceForSeveralRequests) {
    ASSERT_TRUE(QDBusConnection::sessionBus().isConnected());
    int heard = 0;
    int unheard = 0;
    const auto handle = widgetTimelines::observe([&] { ++heard; });
    {
        const auto dropped = widgetTimelines::observe([&] { ++unheard; });
    }
    for (int i = 0; i < 5; ++i)
        widgetTimelines::reloadAll();
    EXPECT_TRUE(QTest::qWaitFor([&] { return heard > 0; }));
    EXPECT_EQ(heard, 1);
    widgetTimelines::reloadAll();
    EXPECT_TRUE(QTest::qWaitFor([&] { return heard > 1; }));
    EXPECT_EQ(heard, 2);
    EXPECT_EQ(unheard, 0);
}

} // namespace
} // namespace ellwynd
