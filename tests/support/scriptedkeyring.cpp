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

QDBusObjectPath nothing() {
    return QDBusObjectPath(QStringLiteral("/"));
}

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
    const auto list = [](const QString &each) {
        return QVariant::fromValue(QList<QDBusObjectPath>{QDBusObjectPath(each)});
    };
    if (interface.endsWith(QStringLiteral("Service")))
        return {{QStringLiteral("Collections"), list(collectionPath)}};
    if (interface.endsWith(QStringLiteral("Collection"))) {
        QList<QDBusObjectPath> all;
        for (std::size_t i = 0; i < items.size(); ++i)
            all << QDBusObjectPath(itemPath(i));
        return {
            {QStringLiteral("Items"), QVariant::fromValue(all)},
            {QStringLiteral("Label"), QStringLiteral("Login")},
            {QStringLiteral("Locked"), false},
            {QStringLiteral("Created"), quint64{1}},
            {QStringLiteral("Modified"), quint64{1}}};
    }
    const Item &item = items.at(indexOf(path));
    return {
        {QStringLiteral("Locked"), item.locked},
        {QStringLiteral("Attributes"),
         QVariant::fromValue(
             Attributes{{QStringLiteral("account"), QString::fromStdString(item.account)}})},
        {QStringLiteral("Label"), QStringLiteral("Canvas access token")},
        {QStringLiteral("Created"), item.modified},
        {QStringLiteral("Modified"), item.modified}};
}

void ScriptedKeyring::completePrompt(bool dismissed) {
    QList<QDBusObjectPath> unlocked;
    for (const std::size_t index : std::exchange(promptedItems, {})) {
        if (dismissed)
            continue;
        items.at(index).locked = false;
        unlocked << QDBusObjectPath(itemPath(index));
    }
    QDBusMessage completed = QDBusMessage::createSignal(
        promptPath, QStringLiteral("org.freedesktop.Secret.Prompt"), QStringLiteral("Completed"));
    completed << dismissed << QVariant::fromValue(QDBusVariant(QVariant::fromValue(unlocked)));
    bus.send(completed);
}

QDBusMessage ScriptedKeyring::answer(const QDBusMessage &message) {
    const QString method = message.member();
    const QString path = message.path();
    if (method == QStringLiteral("GetAll"))
        return message.createReply(properties(message.arguments().at(0).toString(), path));
    if (method == QStringLiteral("OpenSession")) {
        if (message.arguments().at(0).toString() != QStringLiteral("plain"))
            return message.createErrorReply(QDBusError::NotSupported, QStringLiteral("only plain"));
        return message.createReply(
            {QVariant::fromValue(QDBusVariant(QString())),
             QVariant::fromValue(QDBusObjectPath(root + QStringLiteral("/session/1")))});
    }
    if (method == QStringLiteral("SearchItems")) {
        const auto wanted = qdbus_cast<Attributes>(message.arguments().at(0));
        QList<QDBusObjectPath> unlocked;
        QList<QDBusObjectPath> locked;
        for (std::size_t i = 0; i < items.size(); ++i) {
            const Item &item = items[i];
            if (!item.deleted &&
                item.account == wanted.value(QStringLiteral("account")).toStdString())
                (item.locked ? locked : unlocked) << QDBusObjectPath(itemPath(i));
        }
        return message.createReply({QVariant::fromValue(unlocked), QVariant::fromValue(locked)});
    }
    if (method == QStringLiteral("Unlock")) {
        promptedItems.clear();
        for (const QDBusObjectPath &each :
             qdbus_cast<QList<QDBusObjectPath>>(message.arguments().at(0)))
            promptedItems.push_back(indexOf(each.path()));
        return message.createReply(
            {QVariant::fromValue(QList<QDBusObjectPath>()),
             QVariant::fromValue(QDBusObjectPath(promptPath))});
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
        WireSecret secret{.session = message.arguments().at(0).value<QDBusObjectPath>()};
        if (!answersEmpty)
            secret.value = items.at(indexOf(path)).secret;
        return message.createReply(QVariant::fromValue(secret));
    }
    if (method == QStringLiteral("Delete")) {
        items.at(indexOf(path)).deleted = true;
        return message.createReply(QVariant::fromValue(nothing()));
    }
    if (method == QStringLiteral("CreateItem")) {
        const auto all = qdbus_cast<QVariantMap>(message.arguments().at(0));
        const auto attributes = qdbus_cast<Attributes>(
            all.value(QStringLiteral("org.freedesktop.Secret.Item.Attributes")));
        items.push_back(
            {.account = attributes.value(QStringLiteral("account")).toStdString(),
             .secret = qdbus_cast<WireSecret>(message.arguments().at(1)).value,
             .modified = items.size() + 2});
        return message.createReply(
            {QVariant::fromValue(QDBusObjectPath(itemPath(items.size() - 1))),
             QVariant::fromValue(nothing())});
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
