#include "app/explain/explaintexts.h"

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

std::string floorText(ScoreFloor floor) {
    switch (floor) {
    case ScoreFloor::failingGrade:
        return "Raised to At Risk, since the score is 50% or less.";
    case ScoreFloor::mostWorkMissing:
        return "Raised to At Risk, since at least half of the work so far is missing.";
    case ScoreFloor::belowPassing:
        break;
    }
    return "Raised to Watch, since the score is below passing.";
}

std::string shareText(const std::optional<double> &share) {
    return share ? fmt::format("{:.2f}", *share) : "no data";
}

std::string signalsText(const RiskRow &row) {
    std::string text = fmt::format("Score {:.2f}", row.score);
    for (const Signal signal : allSignals)
        text += fmt::format(", {} {}", signalName(signal), shareText(row.signals[signal]));
    text += ".";
    if (row.floor)
        text += " " + floorText(*row.floor);
    return text;
}

std::string coverageLine(const Coverage &coverage) {
    if (coverage.empty())
        return {};
    const auto counting = std::size_t(std::ranges::count(coverage, true, &SignalCoverage::counts));
    return counting == coverage.size()
        ? fmt::format("All {} signals count", counting)
        : fmt::format("{} of {} signals count", counting, coverage.size());
}

bool isLimited(const Coverage &coverage) {
    return std::ranges::any_of(
        coverage, [](const SignalCoverage &entry) { return !entry.counts || !entry.note.empty(); });
}

std::string coverageText(const SignalCoverage &entry) {
    std::string text(signalName(entry.signal));
    text += entry.counts ? " counts." : " does not count.";
    return entry.note.empty() ? text : text + " " + entry.note;
}

} // namespace ellwynd
