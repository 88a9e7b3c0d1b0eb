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
    Visit *visit = nullptr;
    Date lastInstant;
    for (const RosterSnapshot &entry : history.entries()) {
        if (entry.courseID != courseID || entry.recordedAt < first || entry.recordedAt >= today)
            continue;
        if (visit == nullptr || entry.recordedAt != lastInstant) {
            lastInstant = entry.recordedAt;
            visit = &days[calendar::startOfDay(entry.recordedAt)];
            // Visits of two days in another time zone may be on one day in this one.
            if (entry.recordedAt > visit->at)
                *visit = {.at = entry.recordedAt};
        }
        if (entry.recordedAt == visit->at)
            visit->counts.add(recordedLevel(entry).level());
    }
    std::vector<DailyLevels> result;
    for (const auto &[day, last] : days)
        result.push_back({.day = day, .counts = last.counts});
    return result;
}

DailyLevels levelsOf(const std::vector<RiskRow> &rows, Date now) {
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
