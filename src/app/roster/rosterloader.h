// Loads the records of one course from Canvas and scores them.
#pragma once

#include "base/elapsedtime.h"
#include "canvas/canvasreading.h"
#include "risk/coursethresholds.h"
#include "risk/coverage.h"
#include "risk/gradeweighting.h"
#include "risk/missedwork.h"

namespace ellwynd {

/// What a course is scored from.
struct CourseRecords {
    /// The roster, with one enrollment for each student.
    std::vector<Enrollment> students;
    /// Those of the students on the roster.
    std::vector<SubmissionSummary> submissions;
    GradeWeighting weighting;
};

/// A scored course, with its records, so that it can be rescored without fetching.
struct ScoredCourse {
    Course course;
    SharedList<RiskRow> rows;
    /// Which signals count in the course.
    Coverage coverage;
    std::vector<MissedAssignment> missedWork;
    /// When the records were fetched.
    Date fetchedAt;
    /// The same, for computing their age. Set by the caller of `loadCourse`.
    ElapsedTime readAt{};
    CourseThresholds thresholds;
    /// Absent if the course has no term, or the term no end.
    std::optional<Date> termEndsAt;
    /// Sentences about lists that were cut short.
    std::vector<std::string> notes;
    /// Shared by all rescored copies.
    std::shared_ptr<const CourseRecords> records;
};

/// A scored course, shared by the cache, the roster on screen and the dashboard.
using SharedCourse = std::shared_ptr<const ScoredCourse>;

/// Scores fetched records: a student may have several enrollments, and there may be submissions of
/// users who are not on the roster.
/// @param now the time of the fetch.
/// @param earlier the same course as scored before, with which equal reasons are shared; or null.
[[nodiscard]] ScoredCourse scoreCourse(
    Course course, std::vector<Enrollment> students, const std::vector<AssignmentGroup> &groups,
    std::vector<SubmissionSummary> submissions, const CourseThresholds &thresholds, Date now,
    const ScoredCourse *earlier = nullptr);

/// The course rescored from the same records. Figures that depend on the time stay as of the fetch.
[[nodiscard]] ScoredCourse rescored(const ScoredCourse &course, const CourseThresholds &thresholds);

/// The course rescored with its current thresholds; the same object if they have not changed.
[[nodiscard]] SharedCourse
withCurrentThresholds(const SharedCourse &course, const UserDefaults &defaults);

struct LoadOptions {
    std::stop_token stop;
    RequestPriority priority = RequestPriority::foreground;
    /// The same course as scored before, with which equal reasons are shared; or null.
    SharedCourse earlier;
};

/// Fetches a course's enrollments, assignment groups and submissions concurrently, and scores them
/// with the thresholds in effect when they have arrived. If one of the reads fails, the other two
/// are stopped. `defaults` must outlive the task.
/// @throws CanvasError, Cancelled
[[nodiscard]] QCoro::Task<ScoredCourse> loadCourse(
    std::shared_ptr<CanvasReading> source, Course course, const UserDefaults &defaults, Clock clock,
    LoadOptions options = {});

} // namespace ellwynd
