// One entry of the history: what the program said of one student on one day.
#pragma once

#include "base/date.h"
#include "risk/risklevel.h"

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

/// The level of an entry: absent for an unknown text, an absent level within for "OK".
[[nodiscard]] inline std::optional<std::optional<RiskLevel>>
recordedLevel(const RosterSnapshot &entry) {
    using Level = std::optional<RiskLevel>;
    for (const RiskLevel level : allRiskLevels) {
        if (entry.level == levelName(level))
            return level;
    }
    if (entry.level == levelName(Level{}))
        return Level{};
    return std::nullopt;
}

} // namespace ellwynd
