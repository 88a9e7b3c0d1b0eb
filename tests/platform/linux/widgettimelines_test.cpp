// Runs with its own session bus.
#include "platform/session/widgetservice.h"
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

TEST(WidgetService, SaysWhetherTheWidgetsCameToTheFront) {
    using widgetService::Answer;
    const auto ask = [] {
        std::optional<Answer> answer;
        widgetService::show([&answer](Answer now) { answer = now; });
        EXPECT_TRUE(QTest::qWaitFor([&answer] { return answer.has_value(); }));
        return answer;
    };
    EXPECT_EQ(ask(), Answer::notRunning);
    int shown = 0;
    bool canRaise = true;
    auto serving = widgetService::serve([&] {
        ++shown;
        return canRaise;
    });
    EXPECT_EQ(ask(), Answer::inFront);
    canRaise = false;
    EXPECT_EQ(ask(), Answer::behind);
    EXPECT_EQ(shown, 2);
    serving.reset();
    EXPECT_EQ(ask(), Answer::notRunning);
    // A process that owns the name without answering as it should.
    auto bus = QDBusConnection::sessionBus();
    ASSERT_TRUE(bus.registerService(QStringLiteral("com.varnok.Ellwynd.Widgets")));
    EXPECT_EQ(ask(), Answer::silent);
}

} // namespace
} // namespace ellwynd
