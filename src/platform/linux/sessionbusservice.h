// The program's place on the session bus: one window for a session, and links that reach it.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <chrono>

namespace ellwynd {

/// Owns the name "com.varnok.Ellwynd" and answers org.freedesktop.Application there, as the
/// freedesktop Desktop Entry Specification describes it. Anybody on the bus may call: a call is
/// looked at and announced, and decides nothing itself. Without a session bus the program is alone.
class ApplicationService : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    enum class Outcome {
        /// This process is the program of the session, or there is no bus to say otherwise.
        first,
        /// Another process is, and has taken over what this one was started for.
        handedOver,
        /// Another process has the name and did not answer.
        unanswered,
    };

    /// @param patience how long another process may take to answer.
    explicit ApplicationService(
        QDBusConnection bus = QDBusConnection::sessionBus(),
        std::chrono::milliseconds patience = std::chrono::seconds(3));
    ~ApplicationService() override;

    /// Takes the name; where another process has it, hands the links over to that one, or only
    /// brings it to the front when there are none. Calls that arrive from then on are announced as
    /// soon as the event loop runs.
    /// @param activationToken the right to come to the front, as the desktop gave it; may be empty.
    [[nodiscard]] Outcome start(const QStringList &links, const QString &activationToken);

    /// Gives the name back, so that another process can have it.
    void giveUp();
    /// Takes it again if nobody else has by now.
    void resume();

    // The names are the interface's own.
  public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData);
    Q_SCRIPTABLE void Open(const QStringList &uris, const QVariantMap &platformData);
    Q_SCRIPTABLE void ActivateAction(
        const QString &action, const QVariantList &parameter, const QVariantMap &platformData);

  Q_SIGNALS:
    void activated(const QString &activationToken);
    /// The action "open-course", whose parameter is the course's id.
    void courseRequested(std::int64_t courseID, const QString &activationToken);
    /// At most a hundred links.
    void linksOpened(const QStringList &links, const QString &activationToken);

  private:
    [[nodiscard]] bool takeName();
    /// Whether the process that has the name took it all over.
    [[nodiscard]] bool handOver(const QStringList &links, const QString &activationToken) const;

    QDBusConnection bus;
    std::chrono::milliseconds patience;
};

/// The activation token that the desktop handed to this process. Asked before the application is
/// made, which takes it for its own first window.
[[nodiscard]] QString activationTokenOfStart();

} // namespace ellwynd
