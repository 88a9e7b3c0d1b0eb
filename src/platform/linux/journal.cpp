#include "platform/log/systemlog.h"

#include <sys/stat.h>

#include <string>
#include <syslog.h>

#define SD_JOURNAL_SUPPRESS_LOCATION
#include <systemd/sd-journal.h>

namespace ellwynd {

namespace {

/// sd_journal_send succeeds even without a journal, so the journal's socket is checked first.
bool hasJournal() {
    static const bool answer = [] {
        struct stat info {};
        return ::stat("/run/systemd/journal/socket", &info) == 0 && S_ISSOCK(info.st_mode);
    }();
    return answer;
}

} // namespace

bool writeToSystemLog(std::string_view category, Log::Level level, std::string_view message) {
    return hasJournal() &&
        sd_journal_send(
            "MESSAGE=%.*s", int(message.size()), message.data(), "PRIORITY=%d",
            level == Log::Level::error ? LOG_ERR : LOG_INFO, "SUBSYSTEM=%.*s",
            int(Log::subsystem.size()), Log::subsystem.data(), "CATEGORY=%.*s",
            int(category.size()), category.data(), "SYSLOG_IDENTIFIER=ellwynd", nullptr) == 0;
}

} // namespace ellwynd
