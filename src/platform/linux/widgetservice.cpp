#include "platform/session/widgetservice.h"

#include "base/log.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusReply>

namespace ellwynd::widgetService {

namespace {

constexpr Log logger{"widgets"};

constexpr QLatin1StringView name("com.varnok.Ellwynd.Widgets");
constexpr QLatin1StringView path("/com/varnok/Ellwynd/Widgets");
constexpr int callTimeout = 3000;

class Service : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.varnok.Ellwynd.Widgets")

  public:
    explicit Service(std::function<bool()> show) : show(std::move(show)) {
        if (!bus.isConnected())
            return;
        bus.registerObject(path, this, QDBusConnection::ExportScriptableSlots);
        if (!bus.registerService(name))
            logger.error("Couldn't own the bus name of the widgets");
    }
    ~Service() override {
        if (!bus.isConnected())
            return;
        bus.unregisterService(name);
        bus.unregisterObject(path);
    }

  public Q_SLOTS:
    // The interface defines this name.
    Q_SCRIPTABLE bool Show() { return show(); }

  private:
    QDBusConnection bus = QDBusConnection::sessionBus();
    std::function<bool()> show;
};

Answer answerOf(const QDBusMessage &message) {
    const QDBusReply<bool> reply(message);
    if (reply.isValid())
        return reply.value() ? Answer::inFront : Answer::behind;
    const bool isNobody = reply.error().type() == QDBusError::ServiceUnknown ||
        reply.error().name() == QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner");
    return isNobody ? Answer::notRunning : Answer::silent;
}

} // namespace

void show(std::function<void(Answer)> answered) {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return answered(Answer::notRunning);
    auto call = QDBusMessage::createMethodCall(name, path, name, QStringLiteral("Show"));
    call.setAutoStartService(false);
    auto *pending = new QDBusPendingCallWatcher(bus.asyncCall(call, callTimeout));
    QObject::connect(
        pending, &QDBusPendingCallWatcher::finished, pending,
        [pending, answered = std::move(answered)] {
            pending->deleteLater();
            answered(answerOf(pending->reply()));
        });
}

std::shared_ptr<void> serve(std::function<bool()> show) {
    return std::make_shared<Service>(std::move(show));
}

} // namespace ellwynd::widgetService

#include "platform/linux/widgetservice.moc"
