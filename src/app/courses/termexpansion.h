// Which terms are expanded in the sidebar, as saved in "SidebarExpandedTerms".
#pragma once

#include "preferences/preferencevalue.h"

#include <optional>
#include <vector>

namespace ellwynd {

/// A term of the sidebar; without an id, the courses without a term.
struct TermExpansion {
    std::optional<std::int64_t> termID;
    bool expanded = false;

    bool operator==(const TermExpansion &) const = default;
};

/// The saved list holds the ids of the expanded terms, and those of the collapsed ones as negative
/// numbers. A term that is in neither form has the expansion of a list that was never saved: the
/// newest two terms are expanded.
/// @param termIDs the terms of the sidebar from top to bottom.
[[nodiscard]] std::vector<TermExpansion>
expansionOf(const IDList &saved, const std::vector<std::optional<std::int64_t>> &termIDs);

/// The list after the teacher has expanded or collapsed terms. Terms that the sidebar does not
/// show keep their state.
/// @param shown the terms of the sidebar.
[[nodiscard]] IDList withExpansion(IDList saved, const std::vector<TermExpansion> &shown);

} // namespace ellwynd
