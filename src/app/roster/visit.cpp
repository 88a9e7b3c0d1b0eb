#include "app/roster/visit.h"

#include "risk/levelcounts.h"

namespace ellwynd {

std::vector<RosterChange> movementOf(const ScoredCourse &course, const Stores &stores) {
    return changes(stores.history, course.rows, course.course.id, course.fetchedAt);
}

std::vector<RosterChange>
recordVisit(const ScoredCourse &course, Stores &stores, TrendSync &trends) {
    std::vector<RosterChange> movement = movementOf(course, stores);
    stores.history.record(course.rows, course.course.id, course.fetchedAt);
    trends.publish(course.course.id, levelCounts(course.rows).flagged(), course.fetchedAt);
    return movement;
}

} // namespace ellwynd
