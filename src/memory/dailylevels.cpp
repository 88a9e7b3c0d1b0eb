#include "memory/dailylevels.h"

#include "base/calendar.h"

#include <fmt/format.h>

#include <map>

namespace ellwynd {

std::vector<DailyLevels>
lastTwoWeeks(const RosterHistory &history, std::int64_t courseID, Date now) {
    const Date today = calendar::startOfDay(now);
    const Date first = calendar::startOfDay(calendar::daysBefore(now, trendDays));
    std::map<Date, DailyLevels> days;
    DailyLevels *day = nullptr;
    Date lastInstant;
    for (const RosterSnapshot &entry : history.entries()) {
        if (entry.courseID != courseID || entry.recordedAt < first || entry.recordedAt >= today)
            continue;
        // All entries of a visit have the same instant.
        if (day == nullptr || entry.recordedAt != lastInstant) {
            lastInstant = entry.recordedAt;
            const Date begins = calendar::startOfDay(entry.recordedAt);
            day = &days.try_emplace(begins, DailyLevels{.day = begins}).first->second;
        }
        day->counts.add(recordedLevel(entry).level());
    }
    std::vector<DailyLevels> result;
    for (const auto &[begins, levels] : days)
        result.push_back(levels);
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
