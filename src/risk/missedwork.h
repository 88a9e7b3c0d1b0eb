// Missing work by assignment, most missed first.
#pragma once

#include "risk/gradeweighting.h"

#include <span>

namespace ellwynd {

/// One assignment that at least one student is missing.
struct MissedAssignment {
    std::int64_t id = 0;
    std::string name;
    /// The students missing it, ascending.
    std::vector<std::int64_t> studentIDs;
    std::int64_t rosterSize = 0;
    /// Whether most of the class is missing it, which excludes it from every student's score.
    bool isClassWide = false;

    bool operator==(const MissedAssignment &) const = default;
};

/// A student who is missing an assignment.
struct MissingPair {
    std::int64_t assignmentID;
    std::int64_t studentID;

    auto operator<=>(const MissingPair &) const = default;
};
/// Sorted by assignment id and then student id, without duplicates.
[[nodiscard]] std::vector<MissingPair> missingPairs(std::span<const SubmissionSummary> submissions);

/// Whether an assignment that `missing` students of a roster are missing is class-wide.
[[nodiscard]] bool isClassWide(std::size_t missing, std::size_t rosterSize);

/// Every assignment that a student is missing, by falling number of students and then by name.
[[nodiscard]] std::vector<MissedAssignment> missedWork(
    std::span<const SubmissionSummary> submissions, std::size_t rosterSize,
    const AssignmentNames &names);

/// "3 assignments with missing work, out of 26 students".
[[nodiscard]] std::string missedWorkSummary(std::size_t assignments, std::int64_t rosterSize);

/// The accessible text of a row: "Homework 5, missing for 3 students, excluded from risk scores".
[[nodiscard]] std::string missedWorkDescription(const MissedAssignment &assignment);

/// Explains the different colour of a class-wide row.
inline constexpr std::string_view classWideTooltip =
    "Most of the class is missing this, so it is left out of every student's risk score.";

} // namespace ellwynd
