// The roster turned sideways: which work is going undone, most missed first.
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
    /// Whether most of the class is missing it, which takes it out of every student's score.
    bool isClassWide = false;

    bool operator==(const MissedAssignment &) const = default;
};

/// The students missing each assignment, by assignment id and then student id, each pair once.
struct MissingPair {
    std::int64_t assignmentID;
    std::int64_t studentID;

    auto operator<=>(const MissingPair &) const = default;
};
[[nodiscard]] std::vector<MissingPair> missingPairs(std::span<const SubmissionSummary> submissions);

/// Whether an assignment missed by so many of a roster is class-wide.
[[nodiscard]] bool isClassWide(std::size_t missing, std::size_t rosterSize);

/// Every assignment somebody is missing: more students first, equal counts by name.
[[nodiscard]] std::vector<MissedAssignment> missedWork(
    std::span<const SubmissionSummary> submissions, std::size_t rosterSize,
    const AssignmentNames &names);

/// "3 assignments with missing work, out of 26 students".
[[nodiscard]] std::string missedWorkSummary(std::size_t assignments, std::int64_t rosterSize);

/// The accessible text of a row: "Homework 5, missing for 3 students, excluded from risk scores".
[[nodiscard]] std::string missedWorkDescription(const MissedAssignment &assignment);

/// Why a class-wide row is set apart.
inline constexpr std::string_view classWideTooltip =
    "Most of the class is missing this, so it is left out of every student's risk score.";

} // namespace ellwynd
