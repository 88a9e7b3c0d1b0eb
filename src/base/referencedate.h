// Dates as seconds since 2001-01-01, the form in which files store them.
#pragma once

#include "base/date.h"

#include <cmath>
#include <optional>

namespace ellwynd {

/// 2001-01-01T00:00:00Z, the epoch of the contact log and the message templates.
inline constexpr Date referenceDate = std::chrono::sys_days{std::chrono::year{2001} / 1 / 1};

/// Seconds since the reference date, with a fraction.
[[nodiscard]] inline double secondsSinceReference(Date date) {
    return double((date - referenceDate).count()) / 1e6;
}

/// The instant `seconds` after the reference date, to the microsecond; absent outside the years
/// 0 to 9999.
[[nodiscard]] inline std::optional<Date> dateSinceReference(double seconds) {
    constexpr double earliest = -63'145'526'400.0;
    constexpr double latest = 252'423'993'600.0;
    if (!(seconds >= earliest && seconds < latest))
        return std::nullopt;
    return referenceDate + std::chrono::microseconds{std::llround(seconds * 1e6)};
}

} // namespace ellwynd
