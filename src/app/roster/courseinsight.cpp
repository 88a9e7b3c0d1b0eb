#include "app/roster/courseinsight.h"

#include "app/courses/courselabel.h"
#include "base/text.h"

#include <algorithm>

namespace ellwynd {

std::string levelBrief(const CourseInsight &insight, RiskLevel level) {
    if (insight.days.empty())
        return "";
    const std::int64_t now = insight.days.back().counts[level];
    const std::int64_t change = now - insight.days.front().counts[level];
    std::string text = std::to_string(now) + " " + std::string(levelName(level));
    if (change != 0)
        text += (change > 0 ? " ↑" : " ↓") + std::to_string(change > 0 ? change : -change);
    return text;
}

std::string mostMissedText(const MissedAssignment &assignment) {
    return collapsed(assignment.name) + " — " +
        plural(std::int64_t(assignment.studentIDs.size()), "student");
}

CourseInsight courseInsight(const ScoredCourse &course, const Stores &stores, Date now) {
    CourseInsight insight;
    insight.days = lastTwoWeeks(stores.history, course.course.id, course.fetchedAt);
    const DailyLevels today = levelsOf(course.rows, course.fetchedAt);
    for (const RiskLevel level : allRiskLevels)
        insight.sentences.push_back(levelTrendText(level, insight.days, today));
    insight.days.push_back(today);

    const OutreachCounts counts = outreachCounts(course.rows, stores.contacts, stores.history, now);
    const bool remembered = stores.contacts.isEnabled();
    insight.outreachLine = outreachLine(counts, remembered);
    if (remembered && counts.flagged > 0)
        insight.outreach = counts;

    constexpr std::size_t shown = 3;
    const auto end =
        course.missedWork.begin() + std::ptrdiff_t(std::min(shown, course.missedWork.size()));
    insight.coverage = course.coverage;
    insight.mostMissed.assign(course.missedWork.begin(), end);
    return insight;
}

} // namespace ellwynd
