// The course list, grouped by term.
#pragma once

#include "canvas/records/records.h"

namespace ellwynd {

/// One term's courses.
struct TermGroup {
    /// Absent for courses without a term; their group is the last one.
    std::optional<Term> term;
    std::vector<Course> courses;

    bool operator==(const TermGroup &) const = default;
    [[nodiscard]] std::optional<std::int64_t> id() const {
        return term ? std::optional{term->id} : std::nullopt;
    }
};

/// Courses grouped by term: newest start first, then terms without a start; ties are broken by the
/// larger id. Courses keep their order.
[[nodiscard]] std::vector<TermGroup> groupByTerm(const std::vector<Course> &courses);

/// The term's name, or "Other courses".
[[nodiscard]] std::string title(const TermGroup &group);

} // namespace ellwynd
