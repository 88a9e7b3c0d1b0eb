#include "theme/resources.h"

#include <QFile>

/// The resources of a static library are linked only if they are initialised explicitly. The macro
/// does not work inside a namespace.
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
