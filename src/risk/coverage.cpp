#include "risk/coverage.h"

#include <algorithm>

namespace ellwynd {

namespace {

std::string missingNote(bool counts, bool isWeighted) {
    if (!counts)
        return "Nothing is due, handed in or graded so far.";
    if (!isWeighted)
        return "Missing work is counted, not weighed: the course has no usable weights.";
    return {};
}

std::string gradeNote(std::span<const RiskRow> rows) {
    const auto graded = std::ranges::count_if(
        rows, [](const RiskRow &row) { return row.signals[Signal::grade].has_value(); });
    const auto others = std::ptrdiff_t(rows.size()) - graded;
    if (graded == 0)
        return "There are no grades yet.";
    if (others == 0)
        return {};
    return others == 1 ? "1 student has no score yet."
                       : std::to_string(others) + " students have no score yet.";
}

std::string inactivityNote(const ClassFigures &figures, std::optional<Date> termEndsAt, Date now) {
    if (figures.inactivityCounts)
        return {};
    if (!figures.medianLastActivity)
        return "Canvas reports no activity.";
    if (termEndsAt && *termEndsAt < now)
        return "Left out, since the term has ended.";
    return "Left out, since most of the class is quiet.";
}

} // namespace

Coverage coverageOf(
    std::span<const RiskRow> rows, const ClassFigures &figures, bool isWeighted,
    std::optional<Date> termEndsAt, Date now) {
    Coverage coverage;
    for (const Signal signal : allSignals) {
        const bool counts = std::ranges::any_of(
            rows, [signal](const RiskRow &row) { return row.signals[signal].has_value(); });
        std::string note;
        switch (signal) {
        case Signal::missing:
            note = missingNote(counts, isWeighted);
            break;
        case Signal::pastDue:
            note = missingNote(counts, true);
            break;
        case Signal::time:
            note = counts ? "" : "Canvas reports no time in course.";
            break;
        case Signal::grade:
            note = gradeNote(rows);
            break;
        case Signal::inactivity:
            note = inactivityNote(figures, termEndsAt, now);
            break;
        }
        coverage.push_back({.signal = signal, .counts = counts, .note = std::move(note)});
    }
    return coverage;
}

} // namespace ellwynd
