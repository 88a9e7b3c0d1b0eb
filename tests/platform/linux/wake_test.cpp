// A stand-in for the login manager, on a bus of its own; see support/with-bus.
#include "platform/session/wake.h"
#include "support/until.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include <gtest/gtest.h>

namespace ellwynd {
namespace {

TEST(Wake, IsTheEndOfASleep) {
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
    QDBusConnection bus = QDBusConnection::sessionBus();
    ASSERT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.login1")));
    int woke = 0;
    auto observing = observeWake([&woke] { ++woke; });
    int seen = 0;
    const auto last = observeWake([&seen] { ++seen; });
    // The observers have a connection of their own: its answer means that the bus knows of them.
    ASSERT_TRUE(QDBusConnection::systemBus().interface()->isServiceRegistered(
        QStringLiteral("org.freedesktop.login1")));
    // One sleep begins, and two end.
    const auto sleepAndWake = [&] {
        const int before = seen;
        for (const bool begins : {false, true, false}) {
            QDBusMessage signal = QDBusMessage::createSignal(
                QStringLiteral("/org/freedesktop/login1"),
                QStringLiteral("org.freedesktop.login1.Manager"),
                QStringLiteral("PrepareForSleep"));
            signal << begins;
            bus.send(signal);
        }
        return test::until([&] { return seen == before + 2; });
    };
    EXPECT_TRUE(sleepAndWake()) << "not when a sleep begins";
    EXPECT_EQ(woke, 2);
    observing.reset();
    EXPECT_TRUE(sleepAndWake());
    EXPECT_EQ(woke, 2);
}

} // namespace
} // namespace ellwynd
