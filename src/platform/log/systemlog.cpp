#include "platform/log/systemlog.h"

#include "base/logfilter.h"

#include <QByteArray>
#include <QString>

#include <fmt/format.h>

#include <cstdio>
#include <unistd.h>

namespace ellwynd {

namespace {

constexpr Log qtLog{"qt"};
constexpr Log settingsLog{"settings"};
constexpr const char *filterVariable = "ELLWYND_LOG";

void writeLine(std::string_view category, Log::Level level, std::string_view message) {
    static const bool onTerminal = ::isatty(STDERR_FILENO) != 0;
    if (!writeToSystemLog(category, level, message) || onTerminal)
        Log::writeToStandardError(category, level, message);
}

void logQtMessage(QtMsgType type, const QMessageLogContext &context, const QString &message) {
    std::string line = message.toStdString();
    if (context.category != nullptr && std::string_view(context.category) != "default")
        line = fmt::format("{}: {}", context.category, line);
    if (type == QtDebugMsg || type == QtInfoMsg)
        qtLog.info(line);
    else
        qtLog.error(line);
}

} // namespace

void installSystemLog() {
    Log::setSink(writeLine);
    const auto filter = LogFilter::parse(qgetenv(filterVariable).toStdString());
    Log::setFilter(filter.value_or(LogFilter()));
    if (!filter)
        settingsLog.error(fmt::format("{} is ignored: it is not valid", filterVariable));
    qInstallMessageHandler(logQtMessage);
}

} // namespace ellwynd
