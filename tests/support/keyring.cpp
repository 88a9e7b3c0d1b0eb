#include "support/keyring.h"

#include "support/wiresecret.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>

#include <csignal>
#include <stdexcept>

namespace ellwynd::test {

namespace {

QVariantList call(
    const QString &service, const char *path, const char *interface, const char *method,
    const QVariantList &arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(
        service, QString::fromLatin1(path), QString::fromLatin1(interface),
        QString::fromLatin1(method));
    message.setArguments(arguments);
    const QDBusMessage answer = QDBusConnection::sessionBus().call(message);
    if (answer.type() != QDBusMessage::ReplyMessage)
        throw std::runtime_error(method + (": " + answer.errorMessage().toStdString()));
    return answer.arguments();
}

const QString secrets = QStringLiteral("org.freedesktop.secrets");
constexpr const char *secretsPath = "/org/freedesktop/secrets";
constexpr const char *serviceInterface = "org.freedesktop.Secret.Service";

QDBusObjectPath defaultCollection() {
    return QDBusObjectPath(QStringLiteral("/org/freedesktop/secrets/aliases/default"));
}

} // namespace

void lockKeyring() {
    call(
        secrets, secretsPath, serviceInterface, "Lock",
        {QVariant::fromValue(QList<QDBusObjectPath>{defaultCollection()})});
}

void unlockKeyring() {
    qDBusRegisterMetaType<WireSecret>();
    const QVariantList session = call(
        secrets, secretsPath, serviceInterface, "OpenSession",
        {QStringLiteral("plain"), QVariant::fromValue(QDBusVariant(QString()))});
    const WireSecret password{.session = session.at(1).value<QDBusObjectPath>(), .value = "test"};
    // A private interface of the keyring, since nobody can answer its prompt.
    call(
        secrets, secretsPath, "org.gnome.keyring.InternalUnsupportedGuiltRiddenInterface",
        "UnlockWithMasterPassword",
        {QVariant::fromValue(defaultCollection()), QVariant::fromValue(password)});
}

void killKeyring() {
    const QVariantList owner = call(
        QStringLiteral("org.freedesktop.DBus"), "/", "org.freedesktop.DBus",
        "GetConnectionUnixProcessID", {secrets});
    if (::kill(pid_t(owner.at(0).toUInt()), SIGKILL) != 0)
        throw std::runtime_error("cannot kill the keyring");
}

} // namespace ellwynd::test
