#include "risk/reasons.h"

#include "base/text.h"

#include <fmt/format.h>

#include <cmath>

namespace ellwynd {

namespace {

constexpr double secondsPerHour = 3600;
/// Low time is mentioned only below this fraction of the median, although it counts below a half.
constexpr double maxNamedTime = 0.4;

/// A whole number in plain decimal; adding 0 turns a negative zero into zero.
std::string whole(double number) {
    return fmt::format("{:.0f}", number + 0.0);
}

/// A link that covers a whole sentence.
ReasonLink linkOver(const std::string &text, decltype(ReasonLink::target) target) {
    return {.range = {0, text.size()}, .target = std::move(target)};
}

ReasonLine missingWorkReason(const ReasonFigures &figures) {
    const std::size_t count = figures.missing.size();
    ReasonLine line{.text = {}, .links = {}, .role = ReasonRole::missingWork};
    line.text = figures.assignedSoFar > 0
        ? fmt::format("{} of {} assignments missing", count, figures.assignedSoFar)
        : plural(std::int64_t(count), "missing assignment");
    if (figures.missingShare) {
        const double percent = std::round(*figures.missingShare * 100);
        line.text += percent < 1 ? " — under 1% of the grade"
                                 : fmt::format(" — {}% of the grade", whole(percent));
    }
    line.links.reserve(count);
    for (const std::int64_t id : figures.missing)
        line.links.push_back(
            linkOver(line.text, AssignmentRef{id, assignmentName(figures.names, id)}));
    return line;
}

ReasonLine currentScoreReason(const ReasonFigures &figures) {
    ReasonLine line{
        .text = fmt::format(
            "Current score {}% (below {}%)", roundedText(*figures.currentScore),
            whole(std::trunc(figures.passingScore))),
        .links = {},
        .role = ReasonRole::currentScore};
    line.links.push_back(linkOver(line.text, GradesTarget{}));
    return line;
}

} // namespace

std::string roundedText(double number) {
    return whole(std::round(number));
}

std::string studentName(const Enrollment &student) {
    if (student.user) {
        for (const auto *name : {&student.user->name, &student.user->sortableName}) {
            if (*name && !(*name)->empty())
                return **name;
        }
    }
    return "Student " + std::to_string(student.userID);
}

std::vector<ReasonLine> explain(const ReasonFigures &figures) {
    std::vector<ReasonLine> lines;
    const auto add = [&lines](ReasonRole role, std::string text) {
        lines.push_back({.text = std::move(text), .links = {}, .role = role});
    };
    if (!figures.missing.empty())
        lines.push_back(missingWorkReason(figures));
    if (figures.currentScore)
        lines.push_back(currentScoreReason(figures));
    if (figures.inactive && !figures.daysAway)
        add(ReasonRole::inactivity, "No recorded activity");
    else if (figures.inactive)
        add(ReasonRole::inactivity, fmt::format("No recent activity ({} days)", *figures.daysAway));
    if (figures.pastDue > 0)
        add(ReasonRole::pastDue, fmt::format("{} past-due unsubmitted", figures.pastDue));
    if (figures.timeOfMedian && *figures.timeOfMedian < maxNamedTime) {
        add(ReasonRole::timeInCourse,
            fmt::format(
                "Low time in course ({}h vs {}h median)",
                roundedText(double(figures.time) / secondsPerHour),
                roundedText(figures.medianTime / secondsPerHour)));
    }
    return lines;
}

std::vector<AssignmentRef> missingAssignments(const RiskRow &row) {
    std::vector<AssignmentRef> result;
    for (const ReasonLine &line : row.reasonLines) {
        for (const ReasonLink &link : line.links) {
            if (const auto *assignment = std::get_if<AssignmentRef>(&link.target))
                result.push_back(*assignment);
        }
    }
    return result;
}

} // namespace ellwynd
