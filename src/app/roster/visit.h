// Who moved since the last visit to a course, and what a visit records.
#pragma once

#include "app/roster/rosterloader.h"
#include "app/shell/stores.h"
#include "memory/movement.h"
#include "memory/trendsync.h"

namespace ellwynd {

/// Who moved since the last visit, without leaving a trace.
[[nodiscard]] std::vector<RosterChange>
movementOf(const ScoredCourse &course, const Stores &stores);

/// Records the day's levels and its count of flagged students as of the fetch.
/// @param replacesLevels false records levels only for a day that has none of the course.
void recordVisit(
    const ScoredCourse &course, Stores &stores, TrendSync &trends, bool replacesLevels = true);

} // namespace ellwynd
