// Dates as numbers, counted from 2001.
#pragma once

#include "base/date.h"

#include <cmath>
#include <optional>

namespace ellwynd {

/// 2001-01-01T00:00:00Z, from which the contact log and the templates count their seconds.
inline constexpr Date referenceDate = std::chrono::sys_days{std::chrono::year{2001} / 1 / 1};

/// Seconds since the reference date, with their fraction.
[[nodiscard]] inline double secondsSinceReference(Date date) {
    return double((date - referenceDate).count()) / 1e6;
}

/// The instant so many seconds after the reference date, to the microsecond; absent outside the
/// years that four digits can write.
[[nodiscard]] inline std::optional<Date> dateSinceReference(double seconds) {
    constexpr double earliest = -63'145'526'400.0;
    constexpr double latest = 252'423'993'600.0;
    if (!(seconds >= earliest && seconds < latest))
        return std::nullopt;
    return referenceDate + std::chrono::microseconds{std::llround(seconds * 1e6)};
}

} // namespace ellwynd
