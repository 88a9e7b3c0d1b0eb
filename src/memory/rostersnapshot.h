// One entry of the history: the verdict on one student on one day.
#pragma once

#include "base/date.h"
#include "memory/recordedlevel.h"

#include <string>

namespace ellwynd {

/// Ids, a level and a count: no name, no grade, no score.
struct RosterSnapshot {
    std::int64_t courseID = 0;
    std::int64_t studentID = 0;
    /// The moment the roster was recorded, not cut to its day.
    Date recordedAt;
    /// "At Risk", "Concern", "Watch" or "OK". Another text, from another version of the program, is
    /// kept as it is and ignored wherever levels are read.
    std::string level;
    std::int64_t missingCount = 0;

    bool operator==(const RosterSnapshot &) const = default;
};

/// The level of an entry; unknown for an unknown text.
[[nodiscard]] inline RecordedLevel recordedLevel(const RosterSnapshot &entry) {
    for (const RiskLevel level : allRiskLevels) {
        if (entry.level == levelName(level))
            return RecordedLevel(level);
    }
    constexpr std::optional<RiskLevel> none;
    return entry.level == levelName(none) ? RecordedLevel(none) : RecordedLevel();
}

} // namespace ellwynd
