#include "memory/dailylevels.h"

#include "base/calendar.h"

#include <fmt/format.h>

#include <map>

namespace ellwynd {

std::vector<DailyLevels>
lastTwoWeeks(const RosterHistory &history, std::int64_t courseID, Date now) {
    const Date today = calendar::startOfDay(now);
    const Date first = calendar::startOfDay(calendar::daysBefore(now, trendDays));
    /// What one visit recorded: all of its entries have the same instant.
    struct Visit {
        Date at;
        LevelCounts counts;
    };
    std::map<Date, Visit> days;
    for (const auto &recorded : history.visits(courseID)) {
        const Date at = recorded->recordedAt();
        if (at < first || at >= today)
            continue;
        Visit &visit = days[calendar::startOfDay(at)];
        // Visits of two days in another time zone may be on one day in this one.
        if (at > visit.at)
            visit = {.at = at};
        for (std::size_t i = 0; at == visit.at && i < recorded->size(); ++i)
            visit.counts.add(recorded->level(i).level());
    }
    std::vector<DailyLevels> result;
    for (const auto &[day, last] : days)
        result.push_back({.day = day, .counts = last.counts});
    return result;
}

DailyLevels levelsOf(const SharedList<RiskRow> &rows, Date now) {
    return {.day = calendar::startOfDay(now), .counts = levelCounts(rows)};
}

std::string
levelTrendText(RiskLevel level, const std::vector<DailyLevels> &earlier, const DailyLevels &today) {
    const std::int64_t count = today.counts[level];
    const std::int64_t first = earlier.empty() ? count : earlier.front().counts[level];
    const std::string change = first == count ? "unchanged"
        : first < count                       ? fmt::format("up from {} earlier", first)
                                              : fmt::format("down from {} earlier", first);
    return fmt::format("{}: {} now, {}.", levelName(level), count, change);
}

} // namespace ellwynd
