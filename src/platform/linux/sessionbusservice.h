// One program for each session, on the session bus.
#pragma once

#include "platform/session/applicationservice.h"

#include <QDBusConnection>
#include <QVariantMap>

#include <chrono>

namespace ellwynd {

/// Owns the bus name "com.varnok.Ellwynd" and implements org.freedesktop.Application there, as the
/// freedesktop Desktop Entry Specification describes it. Without a session bus the program is
/// alone.
class SessionBusService final : public ApplicationService {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    static constexpr auto defaultCallTimeout = std::chrono::seconds(3);

    /// @param callTimeout how long another process may take to answer.
    explicit SessionBusService(
        QDBusConnection bus = QDBusConnection::sessionBus(),
        std::chrono::milliseconds callTimeout = defaultCallTimeout);
    ~SessionBusService() override;

    Outcome start(const QStringList &links, const QString &activationToken) override;
    void releaseName() override;
    void resume() override;

    // The names are the interface's own.
  public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData);
    Q_SCRIPTABLE void Open(const QStringList &uris, const QVariantMap &platformData);
    Q_SCRIPTABLE void ActivateAction(
        const QString &action, const QVariantList &parameter, const QVariantMap &platformData);

  private:
    [[nodiscard]] bool takeName();
    /// Whether the process that has the name took it all over.
    [[nodiscard]] bool handOver(const QStringList &links, const QString &activationToken) const;

    QDBusConnection bus;
    std::chrono::milliseconds callTimeout;
};

} // namespace ellwynd
