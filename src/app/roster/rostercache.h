// An in-memory cache of scored courses.
#pragma once

#include "app/roster/rosterloader.h"

#include <map>

namespace ellwynd {

/// Holds each course as last scored, until a sign-out or the end of the process.
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
