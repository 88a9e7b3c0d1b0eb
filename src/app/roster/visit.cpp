#include "app/roster/visit.h"

#include "risk/levelcounts.h"

namespace ellwynd {

std::vector<RosterChange> movementOf(const ScoredCourse &course, const Stores &stores) {
    return changes(stores.history, course.rows, course.course.id, course.fetchedAt);
}

void recordVisit(
    const ScoredCourse &course, Stores &stores, TrendSync &trends, bool replacesLevels) {
    const std::int64_t id = course.course.id;
    if (replacesLevels || !stores.history.hasEntries(id, course.fetchedAt))
        stores.history.record(course.rows, id, course.fetchedAt);
    trends.publish(id, levelCounts(course.rows).flagged(), course.fetchedAt);
}

} // namespace ellwynd
