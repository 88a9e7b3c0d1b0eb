#include "app/roster/selectionsummary.h"

#include "base/text.h"

#include <algorithm>

namespace ellwynd {

namespace {

std::vector<AssignmentRef> missedByAll(const SharedList<RiskRow> &students) {
    std::vector<AssignmentRef> common = missingAssignments(students.front());
    for (const RiskRow &row : students) {
        if (row.courseID != students.front().courseID)
            return {};
        const std::vector<AssignmentRef> missing = missingAssignments(row);
        std::erase_if(common, [&](const AssignmentRef &assignment) {
            return std::ranges::find(missing, assignment.id, &AssignmentRef::id) == missing.end();
        });
    }
    return common;
}

} // namespace

SelectionSummary selectionSummary(const SharedList<RiskRow> &students, const RosterView &roster) {
    if (students.empty())
        return {};
    std::vector<std::string> levels;
    const auto add = [&](std::optional<RiskLevel> level, std::string_view words) {
        const auto count = std::ranges::count(students, level, &RiskRow::level);
        if (count > 0)
            levels.push_back(std::to_string(count) + " " + std::string(words));
    };
    for (const RiskLevel level : allRiskLevels)
        add(level, levelName(level));
    add(std::nullopt, "without a flag");
    SelectionSummary summary{.levels = join(levels, " · "), .allMissing = missedByAll(students)};
    if (roster.remembersContacts) {
        const auto count = std::ranges::count_if(students, [&](const RiskRow &row) {
            return row.level && !roster.outreach.contains(keyOf(row));
        });
        summary.notReached = std::to_string(count) + " not yet reached";
    }
    return summary;
}

} // namespace ellwynd
