// Figures of the class as a whole, with which single students are compared.
#pragma once

#include "canvas/records/records.h"

#include <span>
#include <unordered_set>

namespace ellwynd {

/// Enrollments merged to one per student, in the order of their first ones. The user and the grades
/// are the first that are present, the last activity is the latest, and the time in course is the
/// maximum of the student's sections.
[[nodiscard]] std::vector<Enrollment> reduceToStudents(std::span<const Enrollment> enrollments);

struct ClassFigures {
    /// The result of `reduceToStudents`.
    std::vector<Enrollment> roster;
    /// Assignments that most of the roster is missing: 60 % or more of at least five students. They
    /// describe the course rather than a student and are left out of everyone's score.
    std::unordered_set<std::int64_t> excludedAssignments;
    /// The median of the recorded times in course, in seconds; 0 when there are none. A time of 0
    /// counts as not recorded.
    double medianActivityTime = 0;
    /// The median of the last activities (the later of the two middle ones for an even number);
    /// absent if there are none.
    std::optional<Date> medianLastActivity;
    /// Whole days from that median to now, at least 0; 0 if there is none.
    std::int64_t quietDays = 0;
    /// Whether inactivity counts: not after the term has ended, not if no activity is recorded, and
    /// not if the class has been quiet for more than 30 days.
    bool inactivityCounts = false;
};

/// @param enrollments as fetched.
[[nodiscard]] ClassFigures classFigures(
    std::span<const Enrollment> enrollments, std::span<const SubmissionSummary> submissions,
    std::optional<Date> termEndsAt, Date now);

} // namespace ellwynd
