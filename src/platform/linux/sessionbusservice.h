// The single-instance registration on the session bus.
#pragma once

#include "platform/session/applicationservice.h"

#include <QDBusConnection>
#include <QVariantMap>

#include <chrono>

namespace ellwynd {

/// Owns the bus name "com.varnok.Ellwynd" and implements org.freedesktop.Application of the
/// freedesktop Desktop Entry Specification. Without a session bus, `start` returns `first`.
class SessionBusService final : public ApplicationService {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    static constexpr auto defaultCallTimeout = std::chrono::seconds(3);

    /// @param callTimeout the time limit of a call to another process.
    explicit SessionBusService(
        QDBusConnection bus = QDBusConnection::sessionBus(),
        std::chrono::milliseconds callTimeout = defaultCallTimeout);
    ~SessionBusService() override;

    Outcome start(const QStringList &links, const QString &activationToken) override;
    void releaseName() override;
    void reclaimName() override;

    // The interface defines these names.
  public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData);
    Q_SCRIPTABLE void Open(const QStringList &uris, const QVariantMap &platformData);
    Q_SCRIPTABLE void ActivateAction(
        const QString &action, const QVariantList &parameter, const QVariantMap &platformData);

  private:
    [[nodiscard]] bool takeName();
    /// Whether the process that owns the name accepted the call.
    [[nodiscard]] bool forward(const QStringList &links, const QString &activationToken) const;

    QDBusConnection bus;
    std::chrono::milliseconds callTimeout;
};

} // namespace ellwynd
