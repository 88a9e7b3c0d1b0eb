// The course list by term.
#pragma once

#include "canvas/records/records.h"

namespace ellwynd {

/// One term's courses. The group of the courses without a term has none and stands last.
struct TermGroup {
    std::optional<Term> term;
    std::vector<Course> courses;

    bool operator==(const TermGroup &) const = default;
    [[nodiscard]] std::optional<std::int64_t> id() const {
        return term ? std::optional{term->id} : std::nullopt;
    }
};

/// Courses grouped by term: newest start first, terms without a start after those that have one,
/// ties by the larger id. Courses keep the order in which they were fetched.
[[nodiscard]] std::vector<TermGroup> groupByTerm(const std::vector<Course> &courses);

/// The term's name, or "Other courses".
[[nodiscard]] std::string title(const TermGroup &group);

} // namespace ellwynd
