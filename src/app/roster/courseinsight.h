// The band above a course's roster: two weeks in lines, outreach, most missed work.
#pragma once

#include "app/roster/rosterloader.h"
#include "app/shell/stores.h"
#include "memory/dailylevels.h"
#include "memory/outreach.h"

namespace ellwynd {

struct CourseInsight {
    /// Recorded days of the last two weeks, earliest first, and today as it stands, last.
    std::vector<DailyLevels> days;
    /// A sentence per level, in the order of `allRiskLevels`.
    std::vector<std::string> sentences;
    /// Absent while contacts are not remembered, or while nobody is flagged.
    std::optional<OutreachCounts> outreach;
    /// The counts in a line, or why there are none.
    std::string outreachLine;
    /// The first few of the missed-work list.
    std::vector<MissedAssignment> mostMissed;

    bool operator==(const CourseInsight &) const = default;
};

[[nodiscard]] CourseInsight
courseInsight(const ScoredCourse &course, const Stores &stores, Date now);

} // namespace ellwynd
