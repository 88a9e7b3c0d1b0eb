// One course from Canvas's records to scored rows.
#pragma once

#include "canvas/canvasreading.h"
#include "risk/coursethresholds.h"
#include "risk/gradeweighting.h"
#include "risk/missedwork.h"
#include "risk/riskrow.h"

namespace ellwynd {

/// One course scored, with the records it was scored from: a change of thresholds scores them again
/// instead of fetching.
struct ScoredCourse {
    Course course;
    std::vector<RiskRow> rows;
    std::vector<MissedAssignment> missedWork;
    /// When the records were fetched.
    Date fetchedAt;
    CourseThresholds thresholds;

    /// As fetched: several enrollments of one student, submissions of people off the roster.
    std::vector<Enrollment> students;
    std::vector<SubmissionSummary> submissions;
    GradeWeighting weighting;
    std::optional<Date> termEndsAt;
    /// What the roster's reader must know: lists that were cut short.
    std::vector<std::string> notes;
};

/// Puts fetched records together and scores them.
[[nodiscard]] ScoredCourse scoreCourse(
    Course course, std::vector<Enrollment> students, const std::vector<AssignmentGroup> &groups,
    std::vector<SubmissionSummary> submissions, const CourseThresholds &thresholds, Date now);

/// Scores a course's records again with other thresholds.
void rescore(ScoredCourse &course, const CourseThresholds &thresholds, Date now);

/// Fetches a course's three record sets side by side and scores them with its thresholds as they
/// are when the records have arrived. Throws CanvasError. `source` and `defaults` outlive the task.
[[nodiscard]] QCoro::Task<ScoredCourse>
loadCourse(CanvasReading &source, Course course, const UserDefaults &defaults, Clock clock);

} // namespace ellwynd
