// A secret as the Secret Service API transfers it.
#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusObjectPath>

namespace ellwynd::test {

struct WireSecret {
    QDBusObjectPath session;
    QByteArray parameters;
    QByteArray value;
    QString contentType = QStringLiteral("text/plain");
};

inline QDBusArgument &operator<<(QDBusArgument &argument, const WireSecret &secret) {
    argument.beginStructure();
    argument << secret.session << secret.parameters << secret.value << secret.contentType;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument &operator>>(const QDBusArgument &argument, WireSecret &secret) {
    argument.beginStructure();
    argument >> secret.session >> secret.parameters >> secret.value >> secret.contentType;
    argument.endStructure();
    return argument;
}

} // namespace ellwynd::test
