// How long student data is stored, and the courses whose data is never stored.
#pragma once

#include "base/date.h"
#include "preferences/userdefaults.h"

namespace ellwynd::retention {

/// 365 days of 86,400 seconds.
inline constexpr std::chrono::seconds period{31'536'000};

/// Entries before this instant are removed when a file is read.
[[nodiscard]] constexpr Date cutoff(Date now) {
    return now - period;
}

/// Whether an id is in the range of the sample college's courses.
[[nodiscard]] constexpr bool isSampleCourse(std::int64_t courseID) {
    return courseID >= 900'000 && courseID <= 919'999;
}

/// Whether a store's saved preference switches it off. Launch arguments do not count: they must not
/// delete anything when the preference changes.
[[nodiscard]] inline bool
isSwitchedOff(const UserDefaults &defaults, const PreferenceKey<bool> &key) {
    const PreferenceMap saved = defaults.persistentDomain();
    const auto value = saved.find(key.name);
    return value != saved.end() && valueAs<bool>(value->second) == false;
}

} // namespace ellwynd::retention
