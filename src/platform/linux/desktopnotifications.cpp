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

/// The name on the bus and the interface alike.
constexpr QLatin1StringView server("org.freedesktop.Notifications");
constexpr QLatin1StringView path("/org/freedesktop/Notifications");
constexpr QLatin1StringView properties("org.freedesktop.DBus.Properties");

// The keys of a notice's actions; the standard gives "default" to a click on the notice itself.
constexpr QLatin1StringView defaultAction("default");
constexpr QLatin1StringView openAction("open");

QString qt(const std::string &text) {
    return QString::fromStdString(text);
}

/// The body as the standard's markup that shows it as it is.
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
    // A server without actions may show them as a dialog in the teacher's way. One with them may
    // not act on a click, so that a button stands beside it.
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

    /// Calls the server and hands its answer on: a reply or an error, or an error once the time
    /// limit has passed.
    void
    ask(QLatin1StringView interface, const char *method, const QVariantList &parameters,
        Reply answered) {
        // A call without a bus never finishes.
        if (!bus.isConnected()) {
            answered(QDBusMessage::createError(
                QDBusError::Disconnected, QStringLiteral("There is no session bus.")));
            return;
        }
        QDBusMessage call =
            QDBusMessage::createMethodCall(server, path, interface, QLatin1StringView(method));
        call.setArguments(parameters);
        auto *pending =
            new QDBusPendingCallWatcher(bus.asyncCall(call, int(callTimeout.count())), this);
        connect(
            pending, &QDBusPendingCallWatcher::finished, this,
            [pending, answered = std::move(answered)] {
                pending->deleteLater();
                answered(pending->reply());
            });
    }

    void authorizationStatus(StatusAnswer answer) {
        // The standard's first question; a server that is only installed is started by it.
        ask(server, "GetServerInformation", {},
            [this, answer = std::move(answer)](const QDBusMessage &reply) mutable {
                if (reply.type() != QDBusMessage::ReplyMessage)
                    answer(AuthorizationStatus::denied);
                else
                    askWhetherInhibited(std::move(answer));
            });
    }

    void post(const UserNotice &notice, Failure failed) {
        listen();
        ask(server, "GetCapabilities", {},
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
    void askWhetherInhibited(StatusAnswer answer) {
        ask(properties, "Get", {server, QStringLiteral("Inhibited")},
            [answer = std::move(answer)](const QDBusMessage &reply) {
                // Many servers do not offer it, which inhibits nothing.
                const QDBusReply<QDBusVariant> inhibited(reply);
                answer(
                    inhibited.isValid() && inhibited.value().variant().toBool()
                        ? AuthorizationStatus::denied
                        : AuthorizationStatus::authorized);
            });
    }

    void send(const UserNotice &notice, const QStringList &capabilities, Failure failed) {
        ask(server, "Notify", arguments(notice, capabilities),
            [this, notice, failed = std::move(failed)](const QDBusMessage &reply) {
                const QDBusReply<uint> id(reply);
                if (id.isValid())
                    posted.insert_or_assign(id.value(), notice);
                else
                    failed(id.error().message().toStdString());
            });
    }

    /// From the first notice on, hears of clicks. Only the name's owner is listened to.
    void listen() {
        if (watcher)
            return;
        const auto hear = [this](const char *signal, const char *slot) {
            bus.connect(server, path, server, QLatin1StringView(signal), this, slot);
        };
        hear("ActionInvoked", SLOT(actionInvoked(uint, QString)));
        hear("ActivationToken", SLOT(activationTokenGiven(uint, QString)));
        // A new server counts its notices from the beginning.
        watcher = std::make_unique<QDBusServiceWatcher>(
            server, bus, QDBusServiceWatcher::WatchForOwnerChange);
        connect(watcher.get(), &QDBusServiceWatcher::serviceOwnerChanged, this, [this] {
            posted.clear();
        });
    }

    QDBusConnection bus = QDBusConnection::sessionBus();
    std::chrono::milliseconds callTimeout;
    std::unique_ptr<QDBusServiceWatcher> watcher;
    /// By the server's id, which it gives once in its life. Kept also when a notice is closed:
    /// servers show closed ones again from their history.
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

std::unique_ptr<UserNotifications> makeUserNotifications() {
    return std::make_unique<DesktopNotifications>();
}

} // namespace ellwynd

#include "platform/linux/desktopnotifications.moc"
