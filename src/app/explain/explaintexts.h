// How a score came about, and what the data cannot say, as texts.
#pragma once

#include "risk/coverage.h"

#include <string>

namespace ellwynd {

/// "Raised to At Risk, since the score is 50% or less."
[[nodiscard]] std::string floorText(ScoreFloor floor);

/// What a signal added: "0.21"; "no data" if it had none.
[[nodiscard]] std::string shareText(const std::optional<double> &share);

/// The score and what each signal added, for screen readers.
[[nodiscard]] std::string signalsText(const RiskRow &row);

/// "4 of 5 signals count"; "All 5 signals count". Empty for a roster without a course.
[[nodiscard]] std::string coverageLine(const Coverage &coverage);
/// Whether a signal does not count or is limited.
[[nodiscard]] bool isLimited(const Coverage &coverage);
/// "Time in course does not count. Canvas reports no time in course."
[[nodiscard]] std::string coverageText(const SignalCoverage &entry);

} // namespace ellwynd
