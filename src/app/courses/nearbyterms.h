// Which terms are current enough to be scored and offered, and which one is meant when none is
// chosen.
#pragma once

#include "canvas/records/termgroups.h"

namespace ellwynd {

/// Whether a term is in session at `now`, starts within the 60 days after it or ended within the 30
/// days before it, in days of 86,400 seconds; both bounds belong to the term's side. A term without
/// an end counts as in session for 120 days from its start, since some institutions give their
/// terms no ends; one without a start is never nearby.
[[nodiscard]] bool isNearby(const Term &term, Date now);

/// The courses of the nearby terms by term, newest start first.
[[nodiscard]] std::vector<TermGroup> nearbyTerms(const std::vector<Course> &courses, Date now);

/// What "Automatic" stands for: of the terms in session the one with the latest start, between
/// terms the latest of those that have started, ties by the larger id. It need not be nearby.
/// Absent when no term has started.
[[nodiscard]] std::optional<Term> automaticTerm(const std::vector<Course> &courses, Date now);

} // namespace ellwynd
