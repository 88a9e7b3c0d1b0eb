// Instants, and their ISO 8601 form in Canvas's responses and the program's files.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ellwynd {

/// An instant in UTC, to the microsecond.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

/// A function that returns the current time. Code that depends on the time takes a Clock or the
/// instant itself.
using Clock = Date (*)();

/// The system's clock.
[[nodiscard]] Date systemNow();

/// Reads an ISO 8601 instant: date, "T", time to the second, optional fraction, then "Z" or an
/// offset ("-06:00", "-0600", "-06"). Absent for anything else, including a date without a time or
/// an offset.
[[nodiscard]] std::optional<Date> parseInstant(std::string_view text);

/// Writes an instant as ISO 8601 in UTC to the second, "2026-09-03T14:05:09Z"; fractions are cut.
[[nodiscard]] std::string formatInstant(Date date);

/// Whole periods of 86,400 seconds from one instant to another, truncated toward zero. Scores use
/// these rather than calendar days.
[[nodiscard]] std::int64_t wholeDaysBetween(Date from, Date to);

} // namespace ellwynd
