// One course from Canvas's records to scored rows.
#pragma once

#include "base/elapsedtime.h"
#include "canvas/canvasreading.h"
#include "risk/coursethresholds.h"
#include "risk/gradeweighting.h"
#include "risk/missedwork.h"
#include "risk/riskrow.h"

namespace ellwynd {

/// What Canvas sent of one course, as fetched: several enrollments of one student, submissions of
/// people off the roster.
struct CourseRecords {
    std::vector<Enrollment> students;
    std::vector<SubmissionSummary> submissions;
    GradeWeighting weighting;
};

/// One course scored, with the records it was scored from: a change of thresholds scores them again
/// instead of fetching.
struct ScoredCourse {
    Course course;
    std::vector<RiskRow> rows;
    std::vector<MissedAssignment> missedWork;
    /// When the records were fetched.
    Date fetchedAt;
    /// The same for telling their age; set by whoever keeps the course.
    ElapsedTime readAt{};
    CourseThresholds thresholds;
    std::optional<Date> termEndsAt;
    /// What the roster's reader must know: lists that were cut short.
    std::vector<std::string> notes;
    /// Shared by all that was scored from them.
    std::shared_ptr<const CourseRecords> records;
};

/// A scored course as the cache, the screen and the dashboard share it.
using SharedCourse = std::shared_ptr<const ScoredCourse>;

/// Puts fetched records together and scores them.
[[nodiscard]] ScoredCourse scoreCourse(
    Course course, std::vector<Enrollment> students, const std::vector<AssignmentGroup> &groups,
    std::vector<SubmissionSummary> submissions, const CourseThresholds &thresholds, Date now);

/// The course scored again from the same records. Live figures stay as of the fetch.
[[nodiscard]] ScoredCourse rescored(const ScoredCourse &course, const CourseThresholds &thresholds);

/// The course scored with its thresholds as they are now; the same one where they have not changed.
[[nodiscard]] SharedCourse
withCurrentThresholds(const SharedCourse &course, const UserDefaults &defaults);

/// Fetches a course's three record sets side by side and scores them with its thresholds as they
/// are when the records have arrived. The first of the reads that fails stops the other two.
/// `defaults` must outlive the task. @throws CanvasError, Cancelled
[[nodiscard]] QCoro::Task<ScoredCourse> loadCourse(
    std::shared_ptr<CanvasReading> source, Course course, const UserDefaults &defaults, Clock clock,
    std::stop_token stop = {}, RequestPriority priority = RequestPriority::foreground);

} // namespace ellwynd
