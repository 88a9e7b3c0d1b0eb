#include "platform/session/detachedprogram.h"

#include <QProcess>

#include <fmt/format.h>

namespace ellwynd {

std::optional<std::string> startDetached(const QString &program, const QStringList &arguments) {
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    if (process.startDetached())
        return std::nullopt;
    return fmt::format(
        "{} could not be started: {}", program.toStdString(), process.errorString().toStdString());
}

} // namespace ellwynd
