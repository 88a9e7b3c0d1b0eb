// What other thresholds would do to a roster.
#pragma once

#include "app/roster/rostercache.h"

namespace ellwynd {

/// The rosters of one or several courses, scored before and after a change of thresholds.
struct ThresholdEffect {
    struct Change {
        StudentKey student;
        std::string name;
        /// Absent for a student who is not flagged.
        std::optional<RiskLevel> from;
        std::optional<RiskLevel> to;

        bool operator==(const Change &) const = default;
    };

    std::int64_t flaggedBefore = 0;
    std::int64_t flaggedAfter = 0;
    /// The students whose level differs, in the order of the rosters before.
    std::vector<Change> changes;

    bool operator==(const ThresholdEffect &) const = default;
};

/// Compares two scorings of the same records.
[[nodiscard]] ThresholdEffect
thresholdEffect(const ScoredCourse &before, const ScoredCourse &after);

/// The effect on all of these courses, as the cache has them now. A course that was read again
/// meanwhile is left out, since it says nothing about thresholds.
[[nodiscard]] ThresholdEffect thresholdEffect(const RosterCache &before, const RosterCache &after);

/// "At 60 %: 7 flagged instead of 10.", or "At 60 %: 10 flagged, as before."; begins with the
/// thresholds that differ.
[[nodiscard]] std::string effectLine(
    const ThresholdEffect &effect, const CourseThresholds &before, const CourseThresholds &after);

/// Who becomes what, and who is no longer flagged: "Now Concern: Theo, Iris. No longer flagged:
/// Liam and 3 more." Empty if no level changes.
/// @param maxNames in each sentence.
[[nodiscard]] std::string effectDetails(const ThresholdEffect &effect, std::size_t maxNames = 4);

} // namespace ellwynd
