// What several selected students have in common.
#pragma once

#include "app/roster/rosterview.h"

namespace ellwynd {

struct SelectionSummary {
    /// "2 At Risk · 1 without a flag", without the levels that nobody has.
    std::string levels;
    /// "2 not yet reached", of the flagged students; empty if contacts are not remembered.
    std::string notReached;
    /// The assignments that every one of them is missing; none for students of several courses.
    std::vector<AssignmentRef> allMissing;

    bool operator==(const SelectionSummary &) const = default;
};

[[nodiscard]] SelectionSummary
selectionSummary(const SharedList<RiskRow> &students, const RosterView &roster);

} // namespace ellwynd
