// The movement since the last visit to a course, and the recording of a visit.
#pragma once

#include "app/roster/rosterloader.h"
#include "app/shell/stores.h"
#include "memory/movement.h"
#include "memory/trendsync.h"

namespace ellwynd {

/// The students whose level changed since the last visit. Records nothing.
[[nodiscard]] std::vector<RosterChange>
movementOf(const ScoredCourse &course, const Stores &stores);

/// Records the levels and shares the count of flagged students, both for the day of the fetch.
/// @param earlier what happens to levels that the course has for that day.
void recordVisit(
    const ScoredCourse &course, Stores &stores, TrendSync &trends,
    EntriesOfDay earlier = EntriesOfDay::replaced);

} // namespace ellwynd
