#include "base/log.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <cstdio>
#include <syslog.h>

#define SD_JOURNAL_SUPPRESS_LOCATION
#include <systemd/sd-journal.h>

namespace ellwynd {

namespace {

Log::Sink otherSink = nullptr;

/// sd_journal_send succeeds without a journal too, so ask for its socket first.
bool hasJournal() {
    static const bool answer = [] {
        struct stat info {};
        return ::stat("/run/systemd/journal/socket", &info) == 0 && S_ISSOCK(info.st_mode);
    }();
    return answer;
}

/// A message is one line: what a server or a file put into it must not forge another.
std::string oneLine(std::string_view message) {
    std::string line(message);
    for (char &c : line) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f)
            c = ' ';
    }
    return line;
}

} // namespace

void Log::setSink(Sink sink) {
    otherSink = sink;
}

void Log::write(Level level, std::string_view message) const {
    const std::string line = oneLine(message);
    if (otherSink != nullptr) {
        otherSink(name, level, line);
    } else if (hasJournal()) {
        sd_journal_send(
            "MESSAGE=%s", line.c_str(), "PRIORITY=%d", level == Level::error ? LOG_ERR : LOG_INFO,
            "SUBSYSTEM=%.*s", int(subsystem.size()), subsystem.data(), "CATEGORY=%.*s",
            int(name.size()), name.data(), "SYSLOG_IDENTIFIER=ellwynd", nullptr);
    } else {
        fmt::print(
            stderr, "{} [{}] {}: {}\n", subsystem, name, level == Level::error ? "error" : "info",
            line);
    }
}

} // namespace ellwynd
