// Scores the roster of a course.
#pragma once

#include "risk/coverage.h"
#include "risk/gradeweighting.h"

namespace ellwynd {

/// The data that a roster is scored from. The views must outlive the call.
struct ScoringInput {
    std::int64_t courseID = 0;
    std::string_view courseName;
    /// As fetched, with one enrollment for each section that a student is in.
    std::span<const Enrollment> enrollments;
    /// Those of users who are not on the roster count for class-wide missing work; the roster
    /// loader leaves them out.
    std::span<const SubmissionSummary> submissions;
    /// Percent.
    double passingScore = 70;
    /// Whole days behind the class; with 0 or less, only students without any activity count as
    /// inactive.
    std::int64_t inactivityDays = 7;
    std::optional<Date> termEndsAt;
    /// Null when the course has no usable weighting; missing work is then counted.
    const GradeWeighting *weighting = nullptr;
    /// Names for missing work, with or without a weighting.
    const AssignmentNames &names;
    Date now;
};

struct ScoredRoster {
    /// One per student, by falling score and therefore by falling level; equal scores keep the
    /// order of the enrollments.
    std::vector<RiskRow> rows;
    Coverage coverage;
};
[[nodiscard]] ScoredRoster scoreRoster(const ScoringInput &input);

/// The level of a score: At Risk from 0.5, Concern from 0.25, Watch from 0.1. Absent below that,
/// and for a score that is not a number.
[[nodiscard]] std::optional<RiskLevel> levelOf(double score);

} // namespace ellwynd
