#include "theme/resources.h"

#include <QFile>

/// A static library's resources are linked only where they are asked for. The macro does not
/// work inside a namespace.
static void initialiseResources() {
    Q_INIT_RESOURCE(theme);
}

namespace ellwynd {

QByteArray resourceFile(const QString &path) {
    static const bool initialised = (initialiseResources(), true);
    Q_UNUSED(initialised)
    QFile file(QStringLiteral(":/theme/") + path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace ellwynd
