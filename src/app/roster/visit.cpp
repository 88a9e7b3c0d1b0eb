#include "app/roster/visit.h"

#include "risk/levelcounts.h"

namespace ellwynd {

std::vector<RosterChange> movementOf(const ScoredCourse &course, const Stores &stores) {
    return changes(stores.history, course.rows, course.course.id, course.fetchedAt);
}

void recordVisit(
    const ScoredCourse &course, Stores &stores, TrendSync &trends, EntriesOfDay earlier) {
    const std::int64_t id = course.course.id;
    stores.history.record(course.rows, id, course.fetchedAt, earlier);
    trends.publish(id, levelCounts(course.rows).flagged(), course.fetchedAt);
}

} // namespace ellwynd
