// The flagged students of a whole term.
#pragma once

#include "app/roster/rosterloader.h"

#include <span>

namespace ellwynd {

/// The flagged students of several courses in one list: highest score first, equal scores in the
/// order of the courses and of their rosters. A student flagged in two courses has two rows.
[[nodiscard]] SharedList<RiskRow> termRows(std::span<const ScoredCourse *const> courses);

} // namespace ellwynd
