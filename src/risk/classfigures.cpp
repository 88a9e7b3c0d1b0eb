#include "risk/classfigures.h"

#include "risk/missedwork.h"

#include <algorithm>
#include <unordered_map>

namespace ellwynd {

namespace {

using namespace std::chrono_literals;

/// Inactivity does not count after the class has been quiet for longer: 30 days.
constexpr auto maxQuietTime = 2'592'000s;

std::unordered_set<std::int64_t>
excludedAssignments(std::span<const SubmissionSummary> submissions, std::size_t rosterSize) {
    std::unordered_set<std::int64_t> excluded;
    const std::vector<MissingPair> pairs = missingPairs(submissions);
    for (auto first = pairs.begin(); first != pairs.end();) {
        const auto next = std::find_if(first, pairs.end(), [&](const MissingPair &pair) {
            return pair.assignmentID != first->assignmentID;
        });
        if (isClassWide(std::size_t(next - first), rosterSize))
            excluded.insert(first->assignmentID);
        first = next;
    }
    return excluded;
}

double medianActivityTime(std::span<const Enrollment> roster) {
    std::vector<std::int64_t> times;
    for (const Enrollment &student : roster) {
        if (const std::int64_t time = student.totalActivityTime.value_or(0); time > 0)
            times.push_back(time);
    }
    if (times.empty())
        return 0;
    std::ranges::sort(times);
    const std::size_t middle = times.size() / 2;
    return times.size() % 2 == 1 ? double(times[middle])
                                 : (double(times[middle - 1]) + double(times[middle])) / 2;
}

std::optional<Date> medianLastActivity(std::span<const Enrollment> roster) {
    std::vector<Date> dates;
    for (const Enrollment &student : roster) {
        if (student.lastActivityAt)
            dates.push_back(*student.lastActivityAt);
    }
    if (dates.empty())
        return std::nullopt;
    const auto middle = dates.begin() + std::ptrdiff_t(dates.size() / 2);
    std::ranges::nth_element(dates, middle);
    return *middle;
}

} // namespace

std::vector<Enrollment> reduceToStudents(std::span<const Enrollment> enrollments) {
    std::vector<Enrollment> roster;
    roster.reserve(enrollments.size());
    std::unordered_map<std::int64_t, std::size_t> positionOf;
    positionOf.reserve(enrollments.size());
    for (const Enrollment &enrollment : enrollments) {
        const auto [position, isNew] = positionOf.try_emplace(enrollment.userID, roster.size());
        if (isNew) {
            roster.push_back(enrollment);
            continue;
        }
        Enrollment &first = roster[position->second];
        if (!first.user)
            first.user = enrollment.user;
        if (!first.grades)
            first.grades = enrollment.grades;
        // An absent value is less than any other.
        first.lastActivityAt = std::max(first.lastActivityAt, enrollment.lastActivityAt);
        first.totalActivityTime = std::max(first.totalActivityTime, enrollment.totalActivityTime);
    }
    return roster;
}

ClassFigures classFigures(
    std::span<const Enrollment> enrollments, std::span<const SubmissionSummary> submissions,
    std::optional<Date> termEndsAt, Date now) {
    ClassFigures figures{.roster = reduceToStudents(enrollments)};
    figures.excludedAssignments = excludedAssignments(submissions, figures.roster.size());
    figures.medianActivityTime = medianActivityTime(figures.roster);
    figures.medianLastActivity = medianLastActivity(figures.roster);
    if (const auto &classDate = figures.medianLastActivity) {
        const bool termHasEnded = termEndsAt && *termEndsAt < now;
        figures.quietDays = std::max<std::int64_t>(0, wholeDaysBetween(*classDate, now));
        figures.inactivityCounts = !termHasEnded && now - *classDate <= maxQuietTime;
    }
    return figures;
}

} // namespace ellwynd
