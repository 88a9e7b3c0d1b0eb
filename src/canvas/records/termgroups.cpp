#include "canvas/records/termgroups.h"

#include <algorithm>
#include <tuple>

namespace ellwynd {

std::vector<TermGroup> groupByTerm(const std::vector<Course> &courses) {
    std::vector<TermGroup> groups;
    for (const Course &course : courses) {
        const auto id = course.term ? std::optional{course.term->id} : std::nullopt;
        auto group = std::ranges::find(groups, id, &TermGroup::id);
        if (group == groups.end())
            group = groups.insert(groups.end(), {.term = course.term, .courses = {}});
        group->courses.push_back(course);
    }
    // An absent start compares less than every date, and an absent id less than every id.
    const auto sortKey = [](const TermGroup &group) {
        return std::tuple(
            group.term.has_value(), group.term ? group.term->startAt : std::nullopt, group.id());
    };
    std::ranges::stable_sort(groups, std::greater{}, sortKey);
    return groups;
}

std::string title(const TermGroup &group) {
    return group.term ? displayName(*group.term) : "Other courses";
}

} // namespace ellwynd
