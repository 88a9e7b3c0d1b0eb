// A course's level counts on each of the last 14 days.
#pragma once

#include "memory/rosterhistory.h"
#include "risk/levelcounts.h"

namespace ellwynd {

/// How many students had each level on a recorded day.
struct DailyLevels {
    /// The start of the day.
    Date day;
    LevelCounts counts;

    bool operator==(const DailyLevels &) const = default;
};

/// The length of a trend line in days before today.
inline constexpr std::int64_t trendDays = 14;

/// The recorded days of a course from 14 days back to yesterday, earliest first. Of two visits on
/// one day, which a change of the time zone can cause, the later counts.
[[nodiscard]] std::vector<DailyLevels>
lastTwoWeeks(const RosterHistory &history, std::int64_t courseID, Date now);

/// The levels of a roster, as those of the day of `now`.
[[nodiscard]] DailyLevels levelsOf(const SharedList<RiskRow> &rows, Date now);

/// "At Risk: 4 now, up from 2 earlier."
[[nodiscard]] std::string
levelTrendText(RiskLevel level, const std::vector<DailyLevels> &earlier, const DailyLevels &today);

/// The accessible names of a course's trend lines and of the trend line on a dashboard card.
inline constexpr std::string_view bandLabel = "Flagged students over the last two weeks, by level";
inline constexpr std::string_view cardTrendLabel = "Flagged over the last two weeks";

} // namespace ellwynd
