#include "app/courses/termexpansion.h"

#include <algorithm>
#include <limits>

namespace ellwynd {

namespace {

/// How many terms are expanded before the teacher expands or collapses any.
constexpr std::size_t initiallyExpanded = 2;

/// The courses without a term are stored as term 0, an id that Canvas never uses.
std::int64_t expandedMark(std::optional<std::int64_t> termID) {
    return termID.value_or(0);
}

std::int64_t collapsedMark(std::optional<std::int64_t> termID) {
    return termID.value_or(0) > 0 ? -*termID : std::numeric_limits<std::int64_t>::min();
}

bool contains(const IDList &list, std::int64_t mark) {
    return std::ranges::find(list, mark) != list.end();
}

} // namespace

std::vector<TermExpansion>
expansionOf(const IDList &saved, const std::vector<std::optional<std::int64_t>> &termIDs) {
    std::vector<TermExpansion> terms;
    for (const auto &termID : termIDs) {
        const bool byDefault = terms.size() < initiallyExpanded;
        const bool expanded = contains(saved, expandedMark(termID)) ||
            (byDefault && !contains(saved, collapsedMark(termID)));
        terms.push_back({.termID = termID, .expanded = expanded});
    }
    return terms;
}

IDList withExpansion(IDList saved, const std::vector<TermExpansion> &shown) {
    for (const TermExpansion &term : shown) {
        std::erase(saved, expandedMark(term.termID));
        std::erase(saved, collapsedMark(term.termID));
        saved.push_back(term.expanded ? expandedMark(term.termID) : collapsedMark(term.termID));
    }
    std::ranges::sort(saved);
    return saved;
}

} // namespace ellwynd
