#include "platform/session/statusarea.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QEventLoop>
#include <QTimer>

namespace ellwynd {

namespace {

/// Both the bus name and the interface.
constexpr QLatin1StringView watcherName("org.kde.StatusNotifierWatcher");
constexpr QLatin1StringView path("/StatusNotifierWatcher");

bool hasStatusArea(const QDBusConnection &bus) {
    constexpr int timeout = 500;
    auto call = QDBusMessage::createMethodCall(
        watcherName, path, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    call << QString(watcherName) << QStringLiteral("IsStatusNotifierHostRegistered");
    const QDBusReply<QDBusVariant> reply(bus.call(call, QDBus::Block, timeout));
    return reply.isValid() && reply.value().variant().toBool();
}

} // namespace

bool waitForStatusArea(std::chrono::milliseconds limit) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    QEventLoop loop;
    // The area may be registered some time after the service.
    bus.connect(
        watcherName, path, watcherName, QStringLiteral("StatusNotifierHostRegistered"), &loop,
        SLOT(quit()));
    const QDBusServiceWatcher watcher(watcherName, bus, QDBusServiceWatcher::WatchForRegistration);
    QObject::connect(&watcher, &QDBusServiceWatcher::serviceRegistered, &loop, [&loop, &bus] {
        if (hasStatusArea(bus))
            loop.quit();
    });
    if (hasStatusArea(bus))
        return true;
    QTimer::singleShot(limit, &loop, &QEventLoop::quit);
    loop.exec();
    return hasStatusArea(bus);
}

} // namespace ellwynd
