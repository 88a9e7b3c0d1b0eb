#include "model.h"

#include "base/calendar.h"

#include <algorithm>
#include <functional>
#include <set>

namespace ellwynd::simulation {

namespace {

using namespace std::chrono_literals;

std::optional<RiskLevel> levelOf(double score) {
    if (score >= 0.5)
        return RiskLevel::atRisk;
    if (score >= 0.25)
        return RiskLevel::concern;
    return score >= 0.1 ? std::optional(RiskLevel::watch) : std::nullopt;
}

std::int64_t wholeDays(Date from, Date to) {
    return std::chrono::duration_cast<std::chrono::days>(to - from).count();
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    const std::size_t half = values.size() / 2;
    if (values.empty())
        return 0;
    return values.size() % 2 != 0 ? values[half] : (values[half - 1] + values[half]) / 2;
}

/// What holds for the whole class.
struct Class {
    std::set<std::int64_t> excluded;
    double medianSeconds = 0;
    std::int64_t quietDays = 0;
    bool inactivityCounts = false;
};

Class classOf(
    const std::vector<School::Student> &roster, const std::vector<SubmissionSummary> &work,
    std::optional<Date> termEnd, Date now) {
    Class result;
    std::map<std::int64_t, std::size_t> missedBy;
    for (const SubmissionSummary &each : work)
        missedBy[each.assignmentID] += each.missing.value_or(false) ? 1 : 0;
    for (const auto &[assignment, count] : missedBy) {
        if (roster.size() >= 5 && count > 0 && double(count) >= 0.6 * double(roster.size()))
            result.excluded.insert(assignment);
    }
    std::vector<double> seconds;
    std::vector<Date> dates;
    for (const School::Student &student : roster) {
        if (student.secondsInCourse > 0)
            seconds.push_back(double(student.secondsInCourse));
        if (student.lastActivityAt)
            dates.push_back(*student.lastActivityAt);
    }
    result.medianSeconds = median(seconds);
    std::ranges::sort(dates);
    if (!dates.empty()) {
        const Date date = dates[dates.size() / 2];
        result.quietDays = std::max<std::int64_t>(0, wholeDays(date, now));
        result.inactivityCounts = now - date <= 30 * 24h && !(termEnd && *termEnd < now);
    }
    return result;
}

/// A student's own work.
struct Work {
    double missing = 0;
    double pastDue = 0;
    double soFar = 0;
};

Work workOf(
    std::int64_t student, const Class &all, const std::vector<SubmissionSummary> &work, Date now) {
    Work result;
    for (const SubmissionSummary &each : work) {
        if (each.userID != student || all.excluded.contains(each.assignmentID))
            continue;
        const bool isMissing = each.missing.value_or(false);
        const bool isDue = each.cachedDueDate < now;
        const bool isOpen = each.workflowState == WorkflowState::unsubmitted;
        result.missing += isMissing ? 1 : 0;
        result.pastDue += isOpen && isDue && !isMissing ? 1 : 0;
        result.soFar += isMissing || !isOpen || isDue ? 1 : 0;
    }
    return result;
}

double scoreOf(
    const School::Student &student, const Work &work, const Class &all, std::size_t assignments,
    const CourseThresholds &thresholds, Date now) {
    const double passing = thresholds.passingScore;
    const double grade = student.score.value_or(passing);
    const double damping = grade > passing ? 1 - 0.6 * std::min(1.0, (grade - passing) / 15) : 1.0;
    // All work has the same points in one group.
    double share = 0;
    for (double missing = 0; missing < work.missing; ++missing)
        share += 1 / double(assignments);
    double time = 0;
    if (all.medianSeconds > 0) {
        const double part = double(student.secondsInCourse) / all.medianSeconds;
        time = part < 0.5 ? 0.2 * std::min(1.0, 2 * (0.5 - part)) : 0;
    }
    double inactivity = 0;
    if (all.inactivityCounts) {
        const auto limit = double(thresholds.inactivityDays);
        const std::int64_t days =
            student.lastActivityAt ? wholeDays(*student.lastActivityAt, now) : 0;
        const auto behind = double(std::max<std::int64_t>(0, days - all.quietDays));
        if (!student.lastActivityAt)
            inactivity = 1;
        else if (limit > 0 && behind > limit)
            inactivity = std::min(1.0, (behind - limit) / limit);
    }
    double gradeSignal = 0;
    if (grade < passing)
        gradeSignal = std::min(1.0, (passing - grade) / std::max(1.0, passing - 50));
    // In the order of the rule, so that sums are rounded alike.
    double score = 0.3 * std::min(1.0, share / 0.2) * damping +
        0.1 * std::min(1.0, work.pastDue / 5) * damping + time * damping + 0.25 * gradeSignal +
        0.15 * inactivity;
    if (grade < passing)
        score = std::max(score, grade <= 50 ? 0.5 : 0.1);
    if (work.missing >= 2 && work.missing / work.soFar >= 0.5)
        score = std::max(score, 0.5);
    return score;
}

} // namespace

std::optional<RiskLevel> Judged::level() const {
    return levelOf(score);
}

bool Judged::agreesWith(const RiskRow &row) const {
    return row.id == id && row.score == score && row.missingCount == missing &&
        row.level == level();
}

std::vector<Judged> judge(
    const School::OneCourse &course, const CourseThresholds &thresholds,
    std::optional<Date> termEnd, Date now) {
    std::vector<School::Student> roster = course.students;
    std::erase_if(roster, [](const School::Student &each) { return !each.enrolled; });
    std::vector<SubmissionSummary> work = School::submissions(course, now);
    std::erase_if(work, [&](const SubmissionSummary &each) {
        return std::ranges::find(roster, each.userID, &School::Student::id) == roster.end();
    });
    const Class all = classOf(roster, work, termEnd, now);
    std::vector<Judged> judged;
    for (const School::Student &student : roster) {
        const Work own = workOf(student.id, all, work, now);
        judged.push_back(
            {.id = student.id,
             .score = scoreOf(student, own, all, course.assignments.size(), thresholds, now),
             .missing = std::int64_t(own.missing)});
    }
    std::ranges::stable_sort(judged, std::greater{}, &Judged::score);
    return judged;
}

RecordedLevel
levelAt(Date contact, StudentKey student, std::span<const RosterSnapshot> history, Date today) {
    const RosterSnapshot *last = nullptr;
    const RosterSnapshot *next = nullptr;
    for (const RosterSnapshot &entry : history) {
        if (entry.courseID != student.courseID || entry.studentID != student.studentID ||
            entry.recordedAt >= calendar::startOfNextDay(today))
            continue;
        if (entry.recordedAt <= contact) {
            if (last == nullptr || entry.recordedAt >= last->recordedAt)
                last = &entry;
        } else if (next == nullptr || entry.recordedAt < next->recordedAt) {
            next = &entry;
        }
    }
    const RosterSnapshot *entry = last != nullptr ? last : next;
    if (entry == nullptr)
        return {};
    for (const RiskLevel level : allRiskLevels) {
        if (entry->level == levelName(level))
            return RecordedLevel(level);
    }
    return RecordedLevel(std::optional<RiskLevel>());
}

} // namespace ellwynd::simulation
