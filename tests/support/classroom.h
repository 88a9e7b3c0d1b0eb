// Small courses for scoring tests.
#pragma once

#include "risk/scorer.h"
#include "support/instants.h"

namespace ellwynd::test {

/// A roster that is built student by student.
struct Classroom {
    std::vector<Enrollment> enrollments;
    std::vector<SubmissionSummary> submissions;
    std::optional<GradeWeighting> weighting;
    AssignmentNames names;
    double passing = 70;
    std::int64_t inactivityDays = 7;
    std::optional<Date> termEndsAt;

    Classroom &student(
        std::int64_t id, std::optional<double> score = std::nullopt,
        std::optional<std::int64_t> secondsAway = std::nullopt,
        std::optional<std::int64_t> time = std::nullopt) {
        Enrollment enrollment{.userID = id, .totalActivityTime = time};
        if (score)
            enrollment.grades = Grades{.currentScore = score};
        if (secondsAway)
            enrollment.lastActivityAt = noon - std::chrono::seconds(*secondsAway);
        enrollments.push_back(enrollment);
        return *this;
    }

    Classroom &missing(std::int64_t student, std::initializer_list<std::int64_t> assignments) {
        return add(
            assignments, {.userID = student, .workflowState = "unsubmitted", .missing = true});
    }

    Classroom &handedIn(std::int64_t student, std::initializer_list<std::int64_t> assignments) {
        return add(assignments, {.userID = student, .workflowState = "graded", .score = 1});
    }

    /// Unsubmitted, not marked missing, and due that many seconds ago.
    Classroom &overdue(
        std::int64_t student, std::initializer_list<std::int64_t> assignments,
        std::int64_t secondsAgo = 86'400) {
        const Date due = noon - std::chrono::seconds(secondsAgo);
        return add(
            assignments, {.userID = student, .workflowState = "unsubmitted", .cachedDueDate = due});
    }

    [[nodiscard]] std::vector<RiskRow> score() const { return scored().rows; }

    [[nodiscard]] ScoredRoster scored() const {
        return scoreRoster(
            {.courseID = 4021,
             .courseName = "Bio",
             .enrollments = enrollments,
             .submissions = submissions,
             .passingScore = passing,
             .inactivityDays = inactivityDays,
             .termEndsAt = termEndsAt,
             .weighting = weighting ? &*weighting : nullptr,
             .names = weighting ? weighting->namesByAssignment : names,
             .now = noon});
    }

    /// The row of one student.
    [[nodiscard]] RiskRow row(std::int64_t id) const {
        for (RiskRow &row : score()) {
            if (row.id == id)
                return std::move(row);
        }
        throw std::invalid_argument("no such student");
    }

  private:
    Classroom &add(std::initializer_list<std::int64_t> assignments, SubmissionSummary work) {
        for (const std::int64_t id : assignments) {
            work.assignmentID = id;
            submissions.push_back(work);
        }
        return *this;
    }
};

/// The explanation of a row, its sentences separated by semicolons.
inline std::string sentences(const RiskRow &row) {
    std::string text;
    for (const ReasonLine &line : row.reasonLines)
        text += (text.empty() ? "" : "; ") + line.text;
    return text;
}

} // namespace ellwynd::test
