#include "risk/gradeweighting.h"

namespace ellwynd {

namespace {

using Counting = std::vector<const Assignment *>;

void addCounting(const AssignmentGroup &group, Counting &into) {
    if (!group.assignments)
        return;
    for (const Assignment &assignment : *group.assignments) {
        if (assignment.published.value_or(true) && !assignment.omitFromFinalGrade.value_or(false))
            into.push_back(&assignment);
    }
}

double points(const Assignment &assignment) {
    return assignment.pointsPossible.value_or(0);
}

double totalPoints(const Counting &assignments) {
    double total = 0;
    for (const Assignment *assignment : assignments)
        total += points(*assignment);
    return total;
}

} // namespace

GradeWeighting gradeWeighting(
    const std::vector<AssignmentGroup> &groups, std::optional<bool> appliesGroupWeights) {
    GradeWeighting weighting;
    double totalWeight = 0;
    Counting all;
    for (const AssignmentGroup &group : groups) {
        totalWeight += group.groupWeight.value_or(0);
        addCounting(group, all);
        for (const Assignment &assignment : group.assignments.value_or(std::vector<Assignment>{})) {
            if (assignment.name)
                weighting.namesByAssignment.emplace(assignment.id, *assignment.name);
        }
    }

    auto &shares = weighting.sharesByAssignment;
    if (totalWeight > 0 && appliesGroupWeights.value_or(true)) {
        for (const AssignmentGroup &group : groups) {
            const double share = group.groupWeight.value_or(0) / totalWeight;
            if (!(share > 0))
                continue;
            Counting counting;
            addCounting(group, counting);
            const double total = totalPoints(counting);
            for (const Assignment *assignment : counting) {
                shares[assignment->id] = total > 0 ? share * (points(*assignment) / total)
                                                   : share * 1 / double(counting.size());
            }
        }
    } else if (const double total = totalPoints(all); total > 0) {
        for (const Assignment *assignment : all)
            shares[assignment->id] = points(*assignment) / total;
    }
    return weighting;
}

std::string assignmentName(const AssignmentNames &names, std::int64_t assignmentID) {
    const auto found = names.find(assignmentID);
    return found != names.end() ? found->second : "Assignment " + std::to_string(assignmentID);
}

} // namespace ellwynd
