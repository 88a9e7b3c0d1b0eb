// Invented courses of any size, as records and as Canvas serves them.
#pragma once

#include "canvas/records/records.h"

#include <QString>

#include <span>

namespace ellwynd::test {

class FakeCanvas;

/// All records of a course.
struct ServedCourse {
    Course course;
    std::vector<Enrollment> enrollments;
    std::vector<AssignmentGroup> groups;
    std::vector<SubmissionSummary> submissions;
};

struct CourseSize {
    std::int64_t students = 120;
    std::int64_t assignments = 40;
    /// The id of the first student; the others follow.
    std::int64_t firstStudent = 90'000;
};

/// A course in the middle of its term at `now`: weighted groups of ten assignments, and a
/// submission for every student and assignment, some late, missing or without a due date. The same
/// arguments give the same course.
[[nodiscard]] ServedCourse inventCourse(std::int64_t id, CourseSize size, Date now);

/// Serves the courses with records of realistic size: a submission is 0.7 to 1.8 KB, an assignment
/// 3 KB, mostly keys that the program ignores.
void serve(FakeCanvas &canvas, std::span<const ServedCourse> courses);

/// The path of one of the lists of a course.
[[nodiscard]] QString coursePath(int course, const char *list);
/// Serves a course without any work, and students who have this score. Their ids are ten times that
/// of the course plus one, two and so on.
void serveScores(FakeCanvas &canvas, int course, int score, int students = 1);

} // namespace ellwynd::test
