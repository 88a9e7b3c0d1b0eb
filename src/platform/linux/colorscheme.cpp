#include "platform/appearance/colorscheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>

namespace ellwynd {

namespace {

constexpr QLatin1StringView service("org.freedesktop.portal.Desktop");
constexpr QLatin1StringView path("/org/freedesktop/portal/desktop");
constexpr QLatin1StringView interface("org.freedesktop.portal.Settings");
constexpr QLatin1StringView group("org.freedesktop.appearance");
constexpr QLatin1StringView key("color-scheme");

/// Short, since the first window waits for the reply.
constexpr int callTimeoutMilliseconds = 150;
// The portal's values; 2 is light.
constexpr uint noPreference = 0;
constexpr uint dark = 1;

/// The value inside nested variants; the portal nests two.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

/// The value as a preference; absent for none.
std::optional<bool> preferenceOf(const QVariant &value) {
    bool isNumber = false;
    const uint number = unwrapped(value).toUInt(&isNumber);
    return isNumber && number != noPreference ? std::optional(number == dark) : std::nullopt;
}

class ColorSchemeObserver : public QObject {
    Q_OBJECT

  public:
    explicit ColorSchemeObserver(std::function<void(std::optional<bool>)> changed)
        : changed(std::move(changed)) {
        // The slot's parameter type is looked up by name.
        qRegisterMetaType<QDBusVariant>();
        QDBusConnection::sessionBus().connect(
            service, path, interface, QStringLiteral("SettingChanged"), this,
            SLOT(settingChanged(QString, QString, QDBusVariant)));
    }

  private Q_SLOTS:
    void settingChanged(
        const QString &changedGroup, const QString &changedKey, const QDBusVariant &value) {
        if (changedGroup == group && changedKey == key)
            changed(preferenceOf(value.variant()));
    }

  private:
    std::function<void(std::optional<bool>)> changed;
};

} // namespace

std::optional<bool> colorScheme::isDark() {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return std::nullopt;
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    call << QString(group) << QString(key);
    call.setAutoStartService(false);
    const QDBusMessage reply = bus.call(call, QDBus::Block, callTimeoutMilliseconds);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return std::nullopt;
    return preferenceOf(reply.arguments().front());
}

std::shared_ptr<void> colorScheme::observe(std::function<void(std::optional<bool> dark)> changed) {
    return std::make_shared<ColorSchemeObserver>(std::move(changed));
}

} // namespace ellwynd

#include "platform/linux/colorscheme.moc"
