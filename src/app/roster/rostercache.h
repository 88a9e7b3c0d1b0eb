// Scored rosters of earlier fetches, in memory alone.
#pragma once

#include "app/roster/rosterloader.h"

#include <map>

namespace ellwynd {

/// Keeps each course as it was last scored, for the life of the process. Its rows are always shown
/// with the time of their fetch.
struct RosterCache {
    std::map<std::int64_t, SharedCourse> entries;

    /// The course's entry, or null.
    [[nodiscard]] SharedCourse find(std::int64_t courseID) const {
        const auto found = entries.find(courseID);
        return found != entries.end() ? found->second : nullptr;
    }
    void store(SharedCourse course) { entries.insert_or_assign(course->course.id, course); }
};

} // namespace ellwynd
