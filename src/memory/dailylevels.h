// A course's levels over the last two weeks, day by day.
#pragma once

#include "memory/rosterhistory.h"
#include "risk/levelcounts.h"

namespace ellwynd {

/// How many students carried each level on one recorded day.
struct DailyLevels {
    /// The start of the day.
    Date day;
    LevelCounts counts;

    bool operator==(const DailyLevels &) const = default;
};

/// How far a trend line reaches back from today.
inline constexpr std::int64_t trendDays = 14;

/// The recorded days of a course from 14 days back to yesterday, earliest first.
[[nodiscard]] std::vector<DailyLevels>
lastTwoWeeks(const RosterHistory &history, std::int64_t courseID, Date now);

/// The levels of a roster today.
[[nodiscard]] DailyLevels levelsOf(const std::vector<RiskRow> &rows, Date now);

/// "At Risk: 4 now, up from 2 earlier."
[[nodiscard]] std::string
levelTrendText(RiskLevel level, const std::vector<DailyLevels> &earlier, const DailyLevels &today);

/// The accessible names of a course's lines and of the line of a dashboard's card.
inline constexpr std::string_view bandLabel = "Flagged students over the last two weeks, by level";
inline constexpr std::string_view cardTrendLabel = "Flagged over the last two weeks";

} // namespace ellwynd
