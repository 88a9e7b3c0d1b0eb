#include "help/resources.h"

#include <QFile>

#include <fmt/format.h>

#include <stdexcept>

/// The resources of a static library are linked only if they are initialised explicitly. The macro
/// does not work inside a namespace.
static void initialiseResources() {
    Q_INIT_RESOURCE(help);
}

namespace ellwynd {

std::string resourceText(std::string_view path) {
    static const bool initialised = (initialiseResources(), true);
    Q_UNUSED(initialised)
    QFile file(QStringLiteral(":/help/") + QString::fromUtf8(path.data(), qsizetype(path.size())));
    if (!file.open(QIODevice::ReadOnly))
        throw std::invalid_argument(fmt::format("There is no help text {}", path));
    return file.readAll().toStdString();
}

} // namespace ellwynd
