// How long anything about a student is remembered, and which courses are never remembered on disk.
#pragma once

#include "base/date.h"

namespace ellwynd::retention {

/// Entries from before this instant are dropped when a file is read: 365 days of 86,400 seconds.
[[nodiscard]] constexpr Date cutoff(Date now) {
    return now - std::chrono::seconds{31'536'000};
}

/// The block of ids in which the sample college's courses lie.
[[nodiscard]] constexpr bool isSampleCourse(std::int64_t courseID) {
    return courseID >= 900'000 && courseID <= 919'999;
}

} // namespace ellwynd::retention
