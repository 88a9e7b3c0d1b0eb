// One course's roster, scored.
#pragma once

#include "risk/classfigures.h"
#include "risk/gradeweighting.h"
#include "risk/riskrow.h"

namespace ellwynd {

/// What a roster is scored from. The views must outlive the call.
struct ScoringInput {
    std::int64_t courseID = 0;
    std::string_view courseName;
    /// Enrollments as fetched; students in several sections are reduced to one.
    std::span<const Enrollment> enrollments;
    /// All students' submissions. No check against the roster is made.
    std::span<const SubmissionSummary> submissions;
    /// Percent.
    double passingScore = 70;
    /// Whole days behind the class; 0 or less leaves only the students without any activity.
    std::int64_t inactivityDays = 7;
    std::optional<Date> termEndsAt;
    /// Null when the course offers no usable weighting: missing work is then counted.
    const GradeWeighting *weighting = nullptr;
    /// Names for missing work, with or without a weighting.
    const AssignmentNames &names;
    Date now;
};

/// One row per student, by combined score, highest first; equal scores keep the order of the
/// enrollments. Since levels are cut from the same score, At Risk comes first.
[[nodiscard]] std::vector<RiskRow> scoreRoster(const ScoringInput &input);

/// The level of a combined score: At Risk from 0.5, Concern from 0.25, Watch from 0.1. Absent below
/// that and for a score that is not a number.
[[nodiscard]] std::optional<RiskLevel> levelOf(double score);

} // namespace ellwynd
