#include "platform/linux/desktopnotifications.h"

#include "base/observerlist.h"
#include "platform/session/activation.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QVariantMap>

#include <map>

namespace ellwynd {

namespace {

/// Both the bus name and the interface.
constexpr QLatin1StringView server("org.freedesktop.Notifications");
constexpr QLatin1StringView path("/org/freedesktop/Notifications");

// The keys of a notice's actions; "default" is a click on the notice itself.
constexpr QLatin1StringView defaultAction("default");
constexpr QLatin1StringView openAction("open");

QString qt(const std::string &text) {
    return QString::fromStdString(text);
}

/// A plain text in the markup of notification bodies.
QString escaped(QString text) {
    return text.replace(u'&', QStringLiteral("&amp;"))
        .replace(u'<', QStringLiteral("&lt;"))
        .replace(u'>', QStringLiteral("&gt;"));
}

/// The arguments of "Notify" for a server with these capabilities.
QVariantList arguments(const UserNotice &notice, const QStringList &capabilities) {
    const auto can = [&](const char *what) {
        return capabilities.contains(QLatin1StringView(what));
    };
    QStringList actions;
    // Servers without actions may show them in a dialog, so they are left out there. Servers with
    // actions may ignore a click on the notice, so there is a button too.
    if (can("actions")) {
        const QString label =
            notice.courseID ? QStringLiteral("Open Course") : QStringLiteral("Open Ellwynd");
        actions = {defaultAction, label, openAction, label};
    }
    const QVariantMap hints{
        {QStringLiteral("desktop-entry"), QStringLiteral("com.varnok.Ellwynd")},
        {QStringLiteral("suppress-sound"), true}};
    constexpr uint replacesNone = 0;
    constexpr int serversOwnExpiry = -1;
    return {
        QStringLiteral("Ellwynd"),
        replacesNone,
        QStringLiteral("com.varnok.Ellwynd"),
        qt(notice.title),
        can("body-markup") ? escaped(qt(notice.body)) : qt(notice.body),
        actions,
        hints,
        serversOwnExpiry};
}

} // namespace

class DesktopNotifications::State : public QObject {
    Q_OBJECT

  public:
    explicit State(std::chrono::milliseconds callTimeout) : callTimeout(callTimeout) {}

    using Reply = std::function<void(const QDBusMessage &)>;

    /// Calls the server and passes on its reply or error; after the time limit, an error.
    void call(const char *method, const QVariantList &parameters, Reply answered) {
        // A call without a bus never finishes.
        if (!bus.isConnected()) {
            answered(QDBusMessage::createError(
                QDBusError::Disconnected, QStringLiteral("There is no session bus.")));
            return;
        }
        QDBusMessage message =
            QDBusMessage::createMethodCall(server, path, server, QLatin1StringView(method));
        message.setArguments(parameters);
        auto *pending =
            new QDBusPendingCallWatcher(bus.asyncCall(message, int(callTimeout.count())), this);
        connect(
            pending, &QDBusPendingCallWatcher::finished, this,
            [pending, answered = std::move(answered)] {
                pending->deleteLater();
                answered(pending->reply());
            });
    }

    void authorizationStatus(StatusAnswer answer) {
        // Every server has this method; the call starts a server that is not running.
        call("GetServerInformation", {}, [answer = std::move(answer)](const QDBusMessage &reply) {
            // A server that inhibits notices keeps them in its list.
            answer(
                reply.type() == QDBusMessage::ReplyMessage ? AuthorizationStatus::authorized
                                                           : AuthorizationStatus::denied);
        });
    }

    void post(const UserNotice &notice, Failure failed) {
        connectSignals();
        call(
            "GetCapabilities", {},
            [this, notice, failed = std::move(failed)](const QDBusMessage &reply) mutable {
                const QDBusReply<QStringList> capabilities(reply);
                if (capabilities.isValid())
                    send(notice, capabilities.value(), std::move(failed));
                else
                    failed(capabilities.error().message().toStdString());
            });
    }

    ObserverList<const UserNotice &> clickObservers;

  private Q_SLOTS:
    void activationTokenGiven(uint id, const QString &token) {
        if (posted.contains(id))
            setActivationToken(token);
    }

    void actionInvoked(uint id, const QString &action) {
        const auto found = posted.find(id);
        if (found == posted.end() || (action != defaultAction && action != openAction))
            return;
        const UserNotice notice = found->second;
        clickObservers.notify(notice);
    }

  private:
    void send(const UserNotice &notice, const QStringList &capabilities, Failure failed) {
        call(
            "Notify", arguments(notice, capabilities),
            [this, notice, failed = std::move(failed)](const QDBusMessage &reply) {
                const QDBusReply<uint> id(reply);
                if (id.isValid())
                    posted.insert_or_assign(id.value(), notice);
                else
                    failed(id.error().message().toStdString());
            });
    }

    /// Called with the first notice. Only signals from the owner of the bus name are received.
    void connectSignals() {
        if (watcher)
            return;
        const auto connectSignal = [this](const char *signal, const char *slot) {
            bus.connect(server, path, server, QLatin1StringView(signal), this, slot);
        };
        connectSignal("ActionInvoked", SLOT(actionInvoked(uint, QString)));
        connectSignal("ActivationToken", SLOT(activationTokenGiven(uint, QString)));
        // A new server reuses the ids of the previous one.
        watcher = std::make_unique<QDBusServiceWatcher>(
            server, bus, QDBusServiceWatcher::WatchForOwnerChange);
        connect(watcher.get(), &QDBusServiceWatcher::serviceOwnerChanged, this, [this] {
            posted.clear();
        });
    }

    QDBusConnection bus = QDBusConnection::sessionBus();
    std::chrono::milliseconds callTimeout;
    std::unique_ptr<QDBusServiceWatcher> watcher;
    /// By the server's id, which a server does not reuse. Closed notices are kept, since servers
    /// show them again from their history.
    std::map<uint, UserNotice> posted;
};

DesktopNotifications::DesktopNotifications(std::chrono::milliseconds callTimeout)
    : state(std::make_unique<State>(callTimeout)) {}

DesktopNotifications::~DesktopNotifications() = default;

void DesktopNotifications::authorizationStatus(StatusAnswer answer) {
    state->authorizationStatus(std::move(answer));
}

void DesktopNotifications::post(const UserNotice &notice, Failure failed) {
    state->post(notice, std::move(failed));
}

std::shared_ptr<void> DesktopNotifications::observeClicks(ClickObserver observer) {
    return state->clickObservers.add(std::move(observer));
}

std::optional<std::string> postAndWait(const UserNotice &notice) {
    constexpr int timeout = 2000;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    const auto call = [&bus](const char *method, const QVariantList &parameters) {
        QDBusMessage message =
            QDBusMessage::createMethodCall(server, path, server, QLatin1StringView(method));
        message.setArguments(parameters);
        return bus.call(message, QDBus::Block, timeout);
    };
    const QDBusReply<QStringList> capabilities(call("GetCapabilities", {}));
    if (!capabilities.isValid())
        return capabilities.error().message().toStdString();
    QStringList withoutActions = capabilities.value();
    withoutActions.removeAll(QStringLiteral("actions"));
    const QDBusReply<uint> id(call("Notify", arguments(notice, withoutActions)));
    return id.isValid() ? std::nullopt : std::optional{id.error().message().toStdString()};
}

std::unique_ptr<UserNotifications> makeUserNotifications() {
    return std::make_unique<DesktopNotifications>();
}

} // namespace ellwynd

#include "platform/linux/desktopnotifications.moc"
