// The records read from Canvas. They are never written back.
#pragma once

#include "base/date.h"
#include "canvas/records/workflowstate.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ellwynd {

struct Term {
    std::int64_t id = 0;
    std::optional<std::string> name;
    std::optional<Date> startAt;
    std::optional<Date> endAt;

    bool operator==(const Term &) const = default;
};

struct Course {
    std::int64_t id = 0;
    std::optional<std::string> name;
    std::optional<std::string> courseCode;
    std::optional<Term> term;
    /// Whether the course weights its assignment groups.
    std::optional<bool> appliesGroupWeights;

    bool operator==(const Course &) const = default;
};

struct Assignment {
    std::int64_t id = 0;
    std::optional<std::string> name;
    std::optional<double> pointsPossible;
    std::optional<bool> omitFromFinalGrade;
    std::optional<bool> published;

    bool operator==(const Assignment &) const = default;
};

struct AssignmentGroup {
    std::int64_t id = 0;
    std::optional<std::string> name;
    /// The group's weight in the final grade. The weights of a course need not add up to 100.
    std::optional<double> groupWeight;
    std::optional<std::vector<Assignment>> assignments;

    bool operator==(const AssignmentGroup &) const = default;
};

struct EnrolledUser {
    std::int64_t id = 0;
    std::optional<std::string> name;
    /// Surname first.
    std::optional<std::string> sortableName;

    bool operator==(const EnrolledUser &) const = default;
};

struct Grades {
    /// Percent.
    std::optional<double> currentScore;
    std::optional<std::string> currentGrade;

    bool operator==(const Grades &) const = default;
};

/// One student in one section of a course.
struct Enrollment {
    std::int64_t userID = 0;
    std::optional<EnrolledUser> user;
    std::optional<Grades> grades;
    /// Absent when Canvas recorded no activity.
    std::optional<Date> lastActivityAt;
    /// Seconds; absent or 0 where the institution has analytics switched off.
    std::optional<std::int64_t> totalActivityTime;

    bool operator==(const Enrollment &) const = default;
};

/// One student's work on one assignment.
struct SubmissionSummary {
    std::int64_t userID = 0;
    std::int64_t assignmentID = 0;
    /// Another state than those of `WorkflowState` has no effect on a score.
    WorkflowState workflowState;
    /// Absent reads as false.
    std::optional<bool> missing;
    std::optional<bool> late;
    /// Points.
    std::optional<double> score;
    /// The student's own due date.
    std::optional<Date> cachedDueDate;

    bool operator==(const SubmissionSummary &) const = default;
};

/// The owner of a token.
struct CanvasUser {
    std::optional<std::string> name;
    std::optional<std::string> shortName;

    bool operator==(const CanvasUser &) const = default;
};

/// The course's name; without one its code; without either "Course " and its id.
[[nodiscard]] std::string displayName(const Course &course);

/// The term's name; without one "Term " and its id.
[[nodiscard]] std::string displayName(const Term &term);

} // namespace ellwynd
