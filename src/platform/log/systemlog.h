// Connects the program's log to the system's log.
#pragma once

#include "base/log.h"

namespace ellwynd {

/// Called at program start, before any thread is started. From then on
/// - log lines go to the system's log, or to standard error where there is none; they also go to
///   standard error if that is a terminal;
/// - the environment variable ELLWYND_LOG filters them, in the syntax of LogFilter::parse;
/// - Qt's messages are logged in the category "qt".
void installSystemLog();

/// Writes one line to the system's log. False when there is none.
bool writeToSystemLog(std::string_view category, Log::Level level, std::string_view message);

} // namespace ellwynd
