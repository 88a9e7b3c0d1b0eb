#include "memory/movement.h"

#include "base/calendar.h"
#include "base/text.h"

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

namespace {

/// Above zero if the level is worse than before; zero for a student without history.
int difference(const RosterChange &change) {
    return change.previousLevel.worseningTo(change.currentLevel);
}

/// The visits to a course before `today`, the latest first; among equal instants in stored order.
HistoryVisits earlierVisits(const RosterHistory &history, std::int64_t courseID, Date today) {
    HistoryVisits earlier;
    std::ranges::copy_if(
        history.visits(courseID), std::back_inserter(earlier),
        [today](const auto &visit) { return visit->recordedAt() < today; });
    std::ranges::stable_sort(
        earlier, std::greater{}, [](const auto &visit) { return visit->recordedAt(); });
    return earlier;
}

} // namespace

MovementKind movementKind(const RosterChange &change) {
    if (!change.previousLevel.isKnown())
        return MovementKind::newcomer;
    const int worse = difference(change);
    return worse > 0 ? MovementKind::worse
        : worse < 0  ? MovementKind::improved
                     : MovementKind::unchanged;
}

bool hasSlipped(const RosterChange &change) {
    return change.previousLevel.level() && difference(change) > 0;
}

bool isNewlyFlagged(const RosterChange &change) {
    return !change.previousLevel.level() && change.currentLevel;
}

bool hasImproved(const RosterChange &change) {
    return difference(change) < 0;
}

MovementCounts movementCounts(const std::vector<RosterChange> &changes) {
    return {
        .slipped = std::ranges::count_if(changes, hasSlipped),
        .newlyFlagged = std::ranges::count_if(changes, isNewlyFlagged),
        .improved = std::ranges::count_if(changes, hasImproved)};
}

bool hasEarlierVisit(const RosterHistory &history, std::int64_t courseID, Date date) {
    const Date today = calendar::startOfDay(date);
    return std::ranges::any_of(
        history.visits(courseID), [&](const auto &visit) { return visit->recordedAt() < today; });
}

std::vector<RosterChange> changes(
    const RosterHistory &history, const SharedList<RiskRow> &rows, std::int64_t courseID,
    Date date) {
    std::vector<RosterChange> moved;
    const HistoryVisits earlier = earlierVisits(history, courseID, calendar::startOfDay(date));
    if (earlier.empty())
        return moved;
    for (const RiskRow &row : rows) {
        RosterChange change{
            .studentID = row.id, .courseID = courseID, .name = {}, .currentLevel = row.level};
        // Most students were there at the last visit.
        for (const auto &visit : earlier) {
            const auto found = visit->find(row.id);
            if (found.empty())
                continue;
            change.previousLevel = visit->level(found.front());
            change.previousDate = visit->recordedAt();
            break;
        }
        const bool isMovement = change.previousLevel.isKnown() ? difference(change) != 0
                                                               : change.currentLevel.has_value();
        if (isMovement) {
            change.name = row.name;
            moved.push_back(std::move(change));
        }
    }
    std::ranges::stable_sort(moved, {}, [](const RosterChange &change) {
        return std::pair{movementKind(change), -severity(change.currentLevel)};
    });
    return moved;
}

std::string movementText(const RosterChange &change) {
    const std::string_view now = levelName(change.currentLevel);
    if (isNewlyFlagged(change))
        return fmt::format("newly {}", now);
    if (hasSlipped(change))
        return fmt::format("slipped from {} to {}", levelName(change.previousLevel.level()), now);
    if (hasImproved(change) && change.currentLevel)
        return fmt::format("improved from {} to {}", levelName(change.previousLevel.level()), now);
    if (hasImproved(change))
        return "no longer flagged";
    return change.previousLevel.isKnown() ? "unchanged" : "new here";
}

std::string changeText(const RosterChange &change) {
    const bool hasVerb =
        hasSlipped(change) || (hasImproved(change) && change.currentLevel.has_value());
    return fmt::format("{} {}{}", change.name, hasVerb ? "" : "is ", movementText(change));
}

std::optional<std::string> summaryLine(const std::vector<RosterChange> &changes) {
    const MovementCounts counts = movementCounts(changes);
    return sinceLastTime(
        {{counts.slipped, "slipped"},
         {counts.newlyFlagged, "newly flagged"},
         {counts.improved, "improved"}});
}

std::optional<std::string>
sinceLastTime(const std::vector<std::pair<std::int64_t, std::string_view>> &counts) {
    std::vector<std::string> parts;
    for (const auto &[count, what] : counts) {
        if (count > 0)
            parts.push_back(fmt::format("{} {}", count, what));
    }
    return parts.empty() ? std::nullopt : std::optional("Since last time: " + join(parts, " · "));
}

} // namespace ellwynd
