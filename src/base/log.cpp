#include "base/log.h"

#include "base/logfilter.h"
#include "base/text.h"

#include <fmt/format.h>

#include <atomic>
#include <cstdio>

namespace ellwynd {

namespace {

std::atomic<Log::Sink> currentSink = &Log::writeToStandardError;
LogFilter currentFilter;

} // namespace

void Log::setSink(Sink sink) {
    currentSink = sink != nullptr ? sink : &Log::writeToStandardError;
}

void Log::setFilter(LogFilter filter) {
    currentFilter = std::move(filter);
}

void Log::writeToStandardError(std::string_view category, Level level, std::string_view message) {
    fmt::print(
        stderr, "{} [{}] {}: {}\n", subsystem, category, level == Level::error ? "error" : "info",
        message);
}

void Log::write(Level level, std::string_view message) const {
    if (currentFilter.allows(name, level))
        currentSink.load()(name, level, oneLine(message));
}

} // namespace ellwynd
