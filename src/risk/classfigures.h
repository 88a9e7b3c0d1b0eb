// What the class as a whole has done: the measure that single students are held against.
#pragma once

#include "canvas/records/records.h"

#include <span>
#include <unordered_set>

namespace ellwynd {

/// The roster: enrollments reduced to one per student, in order of arrival. The user and the grades
/// are the first enrollment's where it has them, the last activity is the latest, the time in
/// course the largest of the student's sections.
[[nodiscard]] std::vector<Enrollment> reduceToStudents(std::span<const Enrollment> enrollments);

struct ClassFigures {
    /// As `reduceToStudents` has it.
    std::vector<Enrollment> roster;
    /// Assignments that most of the roster is missing: 60 % or more of at least five students. They
    /// describe the course rather than a student and are left out of everyone's score.
    std::unordered_set<std::int64_t> excludedAssignments;
    /// The median of the recorded times in course, in seconds; times of 0 are not recorded times. 0
    /// when there are none.
    double medianActivityTime = 0;
    /// The median of the last activities, of an even number the later one in the middle; absent
    /// when nobody has any.
    std::optional<Date> medianLastActivity;
    /// Whole days from that median to now, never below 0; 0 when there is none.
    std::int64_t quietDays = 0;
    /// Whether inactivity counts in this course: not once its term has ended, not when
    /// nobody has any activity, and not when the class has been quiet for more than 30 days.
    bool inactivityCounts = false;
};

/// @param enrollments as fetched.
[[nodiscard]] ClassFigures classFigures(
    std::span<const Enrollment> enrollments, std::span<const SubmissionSummary> submissions,
    std::optional<Date> termEndsAt, Date now);

} // namespace ellwynd
