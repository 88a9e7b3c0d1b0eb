// The weight of each assignment in a course's final grade.
#pragma once

#include "canvas/records/records.h"

#include <unordered_map>

namespace ellwynd {

using AssignmentNames = std::unordered_map<std::int64_t, std::string>;

struct GradeWeighting {
    /// The share of the final grade, 0 to 1, of each assignment that counts. Empty when neither
    /// weights nor points determine it.
    std::unordered_map<std::int64_t, double> sharesByAssignment;
    AssignmentNames namesByAssignment;

    bool operator==(const GradeWeighting &) const = default;
};

/// Weights a course's assignments by group weights if the course uses them, otherwise by points.
/// @param appliesGroupWeights that of the course record; if absent, group weights are used if there
///        are any.
[[nodiscard]] GradeWeighting
gradeWeighting(const std::vector<AssignmentGroup> &groups, std::optional<bool> appliesGroupWeights);

/// The assignment's name; "Assignment " and its id if it has none.
[[nodiscard]] std::string assignmentName(const AssignmentNames &names, std::int64_t assignmentID);

} // namespace ellwynd
