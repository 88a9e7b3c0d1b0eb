// The band above a course's roster: two-week trends, outreach, and the most missed work.
#pragma once

#include "app/roster/rosterloader.h"
#include "app/shell/stores.h"
#include "memory/dailylevels.h"
#include "memory/outreach.h"

namespace ellwynd {

struct CourseInsight {
    /// The recorded days of the last two weeks, earliest first, then today's current levels.
    std::vector<DailyLevels> days;
    /// One sentence for each level, in the order of `allRiskLevels`.
    std::vector<std::string> sentences;
    /// Absent if contacts are not recorded, or if nobody is flagged.
    std::optional<OutreachCounts> outreach;
    /// The counts as text, or the reason why there are none.
    std::string outreachLine;
    /// Which signals count in the course.
    Coverage coverage;
    /// The first three of the course's missed work, or fewer.
    std::vector<MissedAssignment> mostMissed;

    bool operator==(const CourseInsight &) const = default;
};

/// "3 At Risk ↑2": today's count of a level, and the difference to the earliest day of the two
/// weeks, if there is one.
[[nodiscard]] std::string levelBrief(const CourseInsight &insight, RiskLevel level);

/// "Homework 5 — 8 students".
[[nodiscard]] std::string mostMissedText(const MissedAssignment &assignment);

[[nodiscard]] CourseInsight
courseInsight(const ScoredCourse &course, const Stores &stores, Date now);

} // namespace ellwynd
