// The plain sentences that explain a score.
#pragma once

#include "risk/gradeweighting.h"
#include "risk/riskrow.h"

#include <span>

namespace ellwynd {

/// The figures for a student's sentences. A figure without a signal is absent or zero.
struct ReasonFigures {
    /// Missing assignments in the order of the student's submissions.
    std::span<const std::int64_t> missing;
    std::int64_t assignedSoFar = 0;
    /// Share of the final grade; absent when missing work was counted rather than weighted.
    std::optional<double> missingShare;
    /// Percent; absent unless below passing.
    std::optional<double> currentScore;
    double passingScore = 0;
    bool inactive = false;
    /// Whole days since the student's last activity; absent without any.
    std::optional<std::int64_t> daysAway;
    std::int64_t pastDue = 0;
    /// Time in course as a fraction of the class median; absent if no times are recorded.
    std::optional<double> timeOfMedian;
    /// Seconds.
    std::int64_t time = 0;
    double medianTime = 0;
    const AssignmentNames &names;
};

/// The sentences, in the fixed order of the signals.
[[nodiscard]] std::vector<ReasonLine> explain(const ReasonFigures &figures);

/// The user's name, else the sortable name, else "Student " and the id.
[[nodiscard]] std::string studentName(const Enrollment &student);

/// Rounded to the nearest whole number, halves away from zero, in plain decimal.
[[nodiscard]] std::string roundedText(double number);

} // namespace ellwynd
