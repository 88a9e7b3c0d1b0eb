// Invented courses of any size, as records and as a Canvas serves them.
#pragma once

#include "canvas/records/records.h"

#include <span>

namespace ellwynd::test {

class FakeCanvas;

/// What a client that read a course whole has read.
struct ServedCourse {
    Course course;
    std::vector<Enrollment> enrollments;
    std::vector<AssignmentGroup> groups;
    std::vector<SubmissionSummary> submissions;
};

struct CourseSize {
    std::int64_t students = 120;
    std::int64_t assignments = 40;
};

/// A course in mid-term at `now`: weighted groups of ten assignments, and a submission of every
/// student for every assignment, some late, missing or not due at all. The same arguments give the
/// same course.
[[nodiscard]] ServedCourse inventCourse(std::int64_t id, CourseSize size, Date now);

/// Serves the courses and their records at full size: a submission is 0.7 to 1.8 KB, an assignment
/// 3 KB, and most of it are keys that the program ignores.
void serve(FakeCanvas &canvas, std::span<const ServedCourse> courses);

} // namespace ellwynd::test
