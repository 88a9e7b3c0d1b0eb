#include "app/roster/studenthistory.h"

#include "base/calendar.h"

#include <algorithm>

namespace ellwynd {

std::string levelDiffersText(std::optional<RiskLevel> now, std::optional<RiskLevel> recorded) {
    return "Now " + std::string(levelName(now)) +
        ". Recorded today: " + std::string(levelName(recorded)) + ".";
}

namespace {

/// Whether the student has no entry before the last seven days, in a course that has some.
bool isNew(const RiskRow &row, const RosterHistory &history, Date now) {
    constexpr int days = 7;
    const Date boundary = calendar::daysBefore(now, days);
    const auto own = history.entries(row.courseID, row.id);
    return std::ranges::none_of(
               own, [&](const StudentVisit &entry) { return entry.recordedAt < boundary; }) &&
        std::ranges::any_of(history.visits(row.courseID), [&](const auto &visit) {
               return visit->recordedAt() < boundary;
           });
}

} // namespace

StudentHistory studentHistory(
    const RiskRow &row, const std::vector<RosterChange> &movement, const Stores &stores, Date now) {
    StudentHistory history{
        .trend = termTrend(stores.history, row.courseID, row.id, now),
        .outreach = lastOutcome(row, stores.contacts, stores.history, now)};
    const auto change = std::ranges::find_if(movement, [&](const RosterChange &candidate) {
        return candidate.studentID == row.id && candidate.courseID == row.courseID;
    });
    if (history.trend) {
        const TermTrend::Point &last = history.trend->points.back();
        history.levelDiffers =
            last.level != row.level && calendar::daysBetween(last.date, now) == 0;
    }
    if (change != movement.end())
        history.change = *change;
    history.isNew = isNew(row, stores.history, now);
    return history;
}

} // namespace ellwynd
