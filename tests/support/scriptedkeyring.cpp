#include "support/scriptedkeyring.h"

#include "support/wiresecret.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>

#include <stdexcept>

namespace ellwynd::test {

namespace {

using Attributes = QMap<QString, QString>;

const QString root = QStringLiteral("/org/freedesktop/secrets");
const QString promptPath = root + QStringLiteral("/prompt/1");
const QString collectionPath = root + QStringLiteral("/collection/login");

QString itemPath(std::size_t index) {
    return collectionPath + QStringLiteral("/%1").arg(index);
}

std::size_t indexOf(const QString &path) {
    return std::size_t(path.section(u'/', -1).toUInt());
}

QVariant object(const QString &path) {
    return QVariant::fromValue(QDBusObjectPath(path));
}

const QString nothing = QStringLiteral("/");
const QString account = QStringLiteral("account");

} // namespace

ScriptedKeyring::ScriptedKeyring()
    : bus(QDBusConnection::connectToBus(
          QDBusConnection::SessionBus, QStringLiteral("scriptedkeyring"))) {
    qDBusRegisterMetaType<Attributes>();
    qDBusRegisterMetaType<WireSecret>();
    if (!bus.registerVirtualObject(root, this, QDBusConnection::SubPath) ||
        !bus.registerService(QStringLiteral("org.freedesktop.secrets")))
        throw std::runtime_error("cannot be the secret service");
}

ScriptedKeyring::~ScriptedKeyring() {
    bus.unregisterObject(root);
    bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(QStringLiteral("scriptedkeyring"));
}

QString ScriptedKeyring::introspect(const QString &) const {
    return {};
}

QVariantMap ScriptedKeyring::properties(const QString &interface, const QString &path) const {
    QList<QDBusObjectPath> children;
    if (interface.endsWith(QStringLiteral("Service"))) {
        children << QDBusObjectPath(collectionPath);
        return {{QStringLiteral("Collections"), QVariant::fromValue(children)}};
    }
    if (interface.endsWith(QStringLiteral("Collection"))) {
        for (std::size_t i = 0; i < items.size(); ++i)
            children << QDBusObjectPath(itemPath(i));
        return {
            {QStringLiteral("Items"), QVariant::fromValue(children)},
            {QStringLiteral("Locked"), false}};
    }
    const Item &item = items.at(indexOf(path));
    return {
        {QStringLiteral("Locked"), item.locked},
        {QStringLiteral("Attributes"),
         QVariant::fromValue(Attributes{{account, QString::fromStdString(item.account)}})},
        {QStringLiteral("Modified"), item.modified}};
}

void ScriptedKeyring::completePrompt(bool dismissed) {
    if (dismissed)
        promptedItems.clear();
    for (const QDBusObjectPath &each : promptedItems)
        items.at(indexOf(each.path())).locked = false;
    QDBusMessage completed = QDBusMessage::createSignal(
        promptPath, QStringLiteral("org.freedesktop.Secret.Prompt"), QStringLiteral("Completed"));
    completed << dismissed << QVariant::fromValue(QDBusVariant(QVariant::fromValue(promptedItems)));
    bus.send(completed);
}

QDBusMessage ScriptedKeyring::answer(const QDBusMessage &message) {
    const QString method = message.member();
    const QString path = message.path();
    const QVariant first = message.arguments().value(0);
    if (method == QStringLiteral("GetAll"))
        return message.createReply(properties(first.toString(), path));
    if (method == QStringLiteral("OpenSession")) {
        if (first != QStringLiteral("plain"))
            return message.createErrorReply(QDBusError::NotSupported, QStringLiteral("only plain"));
        return message.createReply(
            {QVariant::fromValue(QDBusVariant(QString())),
             object(root + QStringLiteral("/session/1"))});
    }
    if (method == QStringLiteral("SearchItems")) {
        const std::string wanted = qdbus_cast<Attributes>(first).value(account).toStdString();
        QList<QDBusObjectPath> unlocked;
        QList<QDBusObjectPath> locked;
        for (std::size_t i = 0; i < items.size(); ++i) {
            const Item &item = items[i];
            if (!item.deleted && item.account == wanted)
                (item.locked ? locked : unlocked) << QDBusObjectPath(itemPath(i));
        }
        return message.createReply({QVariant::fromValue(unlocked), QVariant::fromValue(locked)});
    }
    if (method == QStringLiteral("Unlock")) {
        promptedItems = qdbus_cast<QList<QDBusObjectPath>>(first);
        return message.createReply(
            {QVariant::fromValue(QList<QDBusObjectPath>()), object(promptPath)});
    }
    if (method == QStringLiteral("Prompt")) {
        ++prompts;
        if (prompt != Prompt::ignored)
            QMetaObject::invokeMethod(
                this, [this] { completePrompt(prompt == Prompt::dismissed); },
                Qt::QueuedConnection);
        return message.createReply();
    }
    if (method == QStringLiteral("GetSecret")) {
        WireSecret secret{.session = first.value<QDBusObjectPath>()};
        if (!answersEmpty)
            secret.value = items.at(indexOf(path)).secret;
        return message.createReply(QVariant::fromValue(secret));
    }
    if (method == QStringLiteral("Delete")) {
        items.at(indexOf(path)).deleted = true;
        return message.createReply(object(nothing));
    }
    if (method == QStringLiteral("CreateItem")) {
        const auto attributes = qdbus_cast<Attributes>(qdbus_cast<QVariantMap>(first).value(
            QStringLiteral("org.freedesktop.Secret.Item.Attributes")));
        items.push_back(
            {.account = attributes.value(account).toStdString(),
             .secret = qdbus_cast<WireSecret>(message.arguments().at(1)).value,
             .modified = items.size() + 2});
        return message.createReply({object(itemPath(items.size() - 1)), object(nothing)});
    }
    return message.createReply();
}

bool ScriptedKeyring::handleMessage(const QDBusMessage &message, const QDBusConnection &from) {
    const QString method = message.member();
    calls << method;
    if (hung.contains(method))
        return true;
    const auto error = errors.find(method);
    from.send(
        error != errors.end() ? message.createErrorReply(error->second, QStringLiteral("scripted"))
                              : answer(message));
    return true;
}

} // namespace ellwynd::test
