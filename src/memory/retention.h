// How long student data is stored, and the courses whose data is never stored.
#pragma once

#include "base/date.h"

namespace ellwynd::retention {

/// Entries before this instant are removed when a file is read: 365 days of 86,400 seconds ago.
[[nodiscard]] constexpr Date cutoff(Date now) {
    return now - std::chrono::seconds{31'536'000};
}

/// Whether an id is in the range of the sample college's courses.
[[nodiscard]] constexpr bool isSampleCourse(std::int64_t courseID) {
    return courseID >= 900'000 && courseID <= 919'999;
}

} // namespace ellwynd::retention
