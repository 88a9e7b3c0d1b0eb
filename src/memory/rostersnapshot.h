// An entry of the history: the level of a student on one day.
#pragma once

#include "base/date.h"

#include <cstdint>
#include <string>

namespace ellwynd {

/// No name, grade or score is stored.
struct RosterSnapshot {
    std::int64_t courseID = 0;
    std::int64_t studentID = 0;
    /// The instant at which the roster was recorded, not the start of its day.
    Date recordedAt;
    /// "At Risk", "Concern", "Watch" or "OK". Other texts, from other versions of the program, are
    /// preserved and count as unknown.
    std::string level;
    std::int64_t missingCount = 0;

    bool operator==(const RosterSnapshot &) const = default;
};

} // namespace ellwynd
