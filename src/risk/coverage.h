// Which signals count in a course, and why the others do not.
#pragma once

#include "risk/classfigures.h"
#include "risk/riskrow.h"

#include <span>
#include <string>

namespace ellwynd {

struct SignalCoverage {
    Signal signal = Signal::missing;
    /// Whether the signal had data for any student.
    bool counts = false;
    /// Why it does not count, or how it is limited; empty if there is nothing to say.
    std::string note;

    bool operator==(const SignalCoverage &) const = default;
};

/// One entry for each signal, in their order.
using Coverage = std::vector<SignalCoverage>;

/// @param rows the scored roster.
/// @param isWeighted whether missing work was weighed by its share of the grade.
[[nodiscard]] Coverage coverageOf(
    std::span<const RiskRow> rows, const ClassFigures &figures, bool isWeighted,
    std::optional<Date> termEndsAt, Date now);

} // namespace ellwynd
