// Which terms are current enough to be scored and offered, and which one is shown by default.
#pragma once

#include "canvas/records/termgroups.h"

namespace ellwynd {

/// Whether a term is in session at `now`, starts within the next 60 days or ended within the last
/// 30, in days of 86,400 seconds, bounds included. Some institutions give their terms no end: such
/// a term counts as in session for 120 days from its start. A term without a start is never nearby.
[[nodiscard]] bool isNearby(const Term &term, Date now);

/// The courses of the nearby terms, grouped by term, newest start first.
[[nodiscard]] std::vector<TermGroup> nearbyTerms(const std::vector<Course> &courses, Date now);

/// The term that "Automatic" selects: the one in session with the latest start or, if none is in
/// session, the one that started last. Ties are broken by the larger id. It may not be nearby.
/// Absent if no term has started.
[[nodiscard]] std::optional<Term> automaticTerm(const std::vector<Course> &courses, Date now);

} // namespace ellwynd
