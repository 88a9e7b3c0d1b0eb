#include "platform/session/wake.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

namespace ellwynd {

namespace {

/// Listens to logind on the system bus.
class WakeObserver : public QObject {
    Q_OBJECT

  public:
    explicit WakeObserver(std::function<void()> woke) : woke(std::move(woke)) {
        QDBusConnection::systemBus().connect(
            QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
            QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"),
            this, SLOT(prepareForSleep(bool)));
    }

  private Q_SLOTS:
    /// Sent before the computer sleeps, and again after it has woken.
    void prepareForSleep(bool begins) {
        if (!begins)
            woke();
    }

  private:
    std::function<void()> woke;
};

} // namespace

std::shared_ptr<void> observeWake(std::function<void()> woke) {
    return std::make_shared<WakeObserver>(std::move(woke));
}

} // namespace ellwynd

#include "platform/linux/wake.moc"
