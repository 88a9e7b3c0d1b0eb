#include "platform/session/widgettimelines.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QTimer>

namespace ellwynd::widgetTimelines {

namespace {

using namespace std::chrono_literals;

constexpr QLatin1StringView path("/com/varnok/Ellwynd/Widgets");
constexpr QLatin1StringView interface("com.varnok.Ellwynd.Widgets");
constexpr QLatin1StringView member("ReloadAllTimelines");

} // namespace

void reloadAll() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected())
        bus.send(QDBusMessage::createSignal(path, interface, member));
}

std::shared_ptr<void> observe(std::function<void()> reload) {
    // The signal restarts the timer, so that requests close together cause one reload.
    const auto timer = std::make_shared<QTimer>();
    timer->setSingleShot(true);
    timer->setInterval(50ms);
    QObject::connect(timer.get(), &QTimer::timeout, timer.get(), std::move(reload));
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected())
        bus.connect({}, path, interface, member, timer.get(), SLOT(start()));
    return timer;
}

} // namespace ellwynd::widgetTimelines
