// What each assignment weighs in a course's final grade.
#pragma once

#include "canvas/records/records.h"

#include <unordered_map>

namespace ellwynd {

using AssignmentNames = std::unordered_map<std::int64_t, std::string>;

struct GradeWeighting {
    /// Each counting assignment's share of the final grade, 0 to 1. Empty when the course gives
    /// nothing to weigh by.
    std::unordered_map<std::int64_t, double> sharesByAssignment;
    AssignmentNames namesByAssignment;

    bool operator==(const GradeWeighting &) const = default;
};

/// Weighs a course's assignments by group weights where the course uses them, otherwise by points.
/// @param appliesGroupWeights as the course record has it; absent lets the weights decide.
[[nodiscard]] GradeWeighting
gradeWeighting(const std::vector<AssignmentGroup> &groups, std::optional<bool> appliesGroupWeights);

/// The assignment's name; "Assignment " and its id where it has none.
[[nodiscard]] std::string assignmentName(const AssignmentNames &names, std::int64_t assignmentID);

} // namespace ellwynd
