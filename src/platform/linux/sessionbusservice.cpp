#include "platform/linux/sessionbusservice.h"

#include "base/log.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr Log logger{"settings"};

constexpr QLatin1StringView name("com.varnok.Ellwynd");
constexpr QLatin1StringView path("/com/varnok/Ellwynd");
constexpr QLatin1StringView interface("org.freedesktop.Application");
/// The keys of an XDG activation token in platform_data, the newer one first.
constexpr QLatin1StringView tokenKey("activation-token");
constexpr QLatin1StringView startupKey("desktop-startup-id");

constexpr QLatin1StringView openCourseAction("open-course");

constexpr qsizetype maxLinks = 100;
constexpr qsizetype maxTokenLength = 1024;

QString tokenOf(const QVariantMap &platformData) {
    for (const QLatin1StringView key : {tokenKey, startupKey}) {
        const QVariant value = platformData.value(key);
        QString token = value.typeId() == QMetaType::QString ? value.toString() : QString();
        const bool plain =
            std::ranges::all_of(token, [](QChar c) { return c >= u' ' && c <= u'~'; });
        if (!token.isEmpty() && token.size() <= maxTokenLength && plain)
            return token;
    }
    return {};
}

} // namespace

SessionBusService::SessionBusService(QDBusConnection bus, std::chrono::milliseconds callTimeout)
    : bus(std::move(bus)), callTimeout(callTimeout) {}

SessionBusService::~SessionBusService() {
    SessionBusService::releaseName();
}

ApplicationService::Outcome
SessionBusService::start(const QStringList &links, const QString &activationToken) {
    if (!bus.isConnected())
        return Outcome::first;
    // The owner of the name may be about to release it.
    constexpr int attempts = 3;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (takeName())
            return Outcome::first;
        if (forward(links, activationToken))
            return Outcome::forwarded;
        if (bus.interface()->isServiceRegistered(name))
            return Outcome::unanswered;
    }
    return Outcome::unanswered;
}

bool SessionBusService::takeName() {
    // Register the object first: calls may arrive as soon as the name is owned.
    bus.registerObject(path, this, QDBusConnection::ExportScriptableSlots);
    const auto reply = bus.interface()->registerService(name);
    if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered)
        return true;
    if (!reply.isValid()) {
        // Without the name the program runs as if there were no bus.
        logger.error(
            fmt::format("Couldn't own the bus name: {}", reply.error().message().toStdString()));
        return true;
    }
    bus.unregisterObject(path);
    return false;
}

bool SessionBusService::forward(const QStringList &links, const QString &activationToken) const {
    auto call = QDBusMessage::createMethodCall(
        name, path, interface,
        links.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("Open"));
    QVariantMap platformData;
    if (!activationToken.isEmpty())
        platformData = {{tokenKey, activationToken}, {startupKey, activationToken}};
    if (!links.isEmpty())
        call << links;
    call << platformData;
    // If the other process has ended, this one takes the name instead of a process that the bus
    // would start.
    call.setAutoStartService(false);
    const QDBusMessage answer = bus.call(call, QDBus::Block, int(callTimeout.count()));
    return answer.type() == QDBusMessage::ReplyMessage;
}

void SessionBusService::releaseName() {
    if (!bus.isConnected() || bus.objectRegisteredAt(path) != this)
        return;
    bus.interface()->unregisterService(name);
    bus.unregisterObject(path);
}

void SessionBusService::reclaimName() {
    if (bus.isConnected() && !takeName())
        logger.error("Couldn't own the bus name: another process owns it");
}

void SessionBusService::Activate(const QVariantMap &platformData) {
    Q_EMIT activationRequested(tokenOf(platformData));
}

void SessionBusService::Open(const QStringList &uris, const QVariantMap &platformData) {
    Q_EMIT linksRequested(uris.first(std::min(uris.size(), maxLinks)), tokenOf(platformData));
}

/// For callers with a course's id instead of a link, such as a notice in the desktop's history.
void SessionBusService::ActivateAction(
    const QString &action, const QVariantList &parameter, const QVariantMap &platformData) {
    const bool oneCourse =
        parameter.size() == 1 && parameter.front().typeId() == QMetaType::LongLong;
    if (action == openCourseAction && oneCourse)
        Q_EMIT courseRequested(parameter.front().toLongLong(), tokenOf(platformData));
}

std::unique_ptr<ApplicationService> makeApplicationService() {
    return std::make_unique<SessionBusService>();
}

} // namespace ellwynd
