// What a visit to a course tells, and what it leaves behind.
#pragma once

#include "app/roster/rosterloader.h"
#include "app/shell/stores.h"
#include "memory/movement.h"
#include "memory/trendsync.h"

namespace ellwynd {

/// Who moved since the last visit, without leaving a trace.
[[nodiscard]] std::vector<RosterChange>
movementOf(const ScoredCourse &course, const Stores &stores);

/// The teacher opened the course when its records were fetched: works out who moved since the last
/// visit, then records that day's levels and its count of flagged students.
[[nodiscard]] std::vector<RosterChange>
recordVisit(const ScoredCourse &course, Stores &stores, TrendSync &trends);

} // namespace ellwynd
