// The program's log, connected to the system's.
#pragma once

#include "base/log.h"

namespace ellwynd {

/// Called by a program at its start, before it starts a thread. From then on
/// - the lines of the log go to the system's log, or to standard error where there is none, and
///   always to standard error too when that is a terminal;
/// - the environment variable ELLWYND_LOG chooses which, as LogFilter::parse reads it;
/// - the messages of Qt are lines of the category "qt".
void installSystemLog();

/// Writes one line where the system keeps logs. False when it keeps none.
bool writeToSystemLog(std::string_view category, Log::Level level, std::string_view message);

} // namespace ellwynd
