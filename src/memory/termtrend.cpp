#include "memory/termtrend.h"

#include "base/calendar.h"

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

std::optional<TermTrend>
termTrend(const RosterHistory &history, std::int64_t courseID, std::int64_t studentID, Date now) {
    TermTrend trend;
    const Date tomorrow = calendar::startOfNextDay(now);
    for (const StudentVisit &entry : history.entries(courseID, studentID)) {
        if (entry.level.isKnown() && entry.recordedAt < tomorrow)
            trend.points.push_back({calendar::startOfDay(entry.recordedAt), entry.level.level()});
    }
    std::ranges::stable_sort(trend.points, {}, &TermTrend::Point::date);
    return trend.points.size() >= 2 ? std::optional{std::move(trend)} : std::nullopt;
}

std::string termStory(const TermTrend &trend) {
    const TermTrend::Point &first = trend.points.front();
    const TermTrend::Point &last = trend.points.back();
    const auto worst =
        std::ranges::max_element(trend.points, {}, [](const TermTrend::Point &point) {
            return severity(point.level);
        })->level;
    const bool steady = std::ranges::all_of(
        trend.points, [&](const TermTrend::Point &point) { return point.level == first.level; });

    std::string body;
    if (steady)
        body = fmt::format("{} throughout", levelName(first.level));
    else if (first.level == last.level)
        body = fmt::format("{} now, as at the start", levelName(first.level));
    else
        body = fmt::format("started {}, now {}", levelName(first.level), levelName(last.level));
    if (worst != first.level && worst != last.level)
        body += fmt::format(", worst {}", levelName(worst));
    return fmt::format(
        "Seen on {} days between {} and {} — {}.", trend.points.size(),
        calendar::shortDay(first.date), calendar::shortDay(last.date), body);
}

bool isJoined(const TermTrend::Point &earlier, const TermTrend::Point &later) {
    return later.date - earlier.date <= std::chrono::seconds{1'209'600};
}

} // namespace ellwynd
