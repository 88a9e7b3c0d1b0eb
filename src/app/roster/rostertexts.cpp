#include "app/roster/rostertexts.h"

#include "app/courses/courselabel.h"
#include "base/calendar.h"
#include "base/text.h"
#include "risk/reasons.h"

#include <algorithm>

namespace ellwynd {

std::string lastActiveText(const std::optional<Date> &lastActivityAt, Date now) {
    if (!lastActivityAt)
        return "never";
    const std::int64_t calendarDays = calendar::daysBetween(*lastActivityAt, now);
    if (calendarDays <= 0)
        return "today";
    if (calendarDays == 1)
        return "yesterday";
    return plural(wholeDaysBetween(*lastActivityAt, now), "day") + " ago";
}

std::string stampNote(Date updatedAt, bool refreshing, Date now) {
    std::vector<std::string> parts;
    if (std::string day = calendar::relativeDay(updatedAt, now); !day.empty())
        parts.push_back(std::move(day));
    if (refreshing)
        parts.emplace_back("refreshing…");
    return join(parts, " · ");
}

std::string scoreText(const std::optional<double> &score) {
    return score ? roundedText(*score) + "%" : "–";
}

std::string scoreAndGradeText(const RiskRow &row) {
    std::string text = row.currentScore ? scoreText(row.currentScore) : "";
    const std::string grade = row.currentGrade.value_or("");
    if (!text.empty() && !grade.empty())
        text += " · ";
    return text + grade;
}

std::string timeInCourseText(const std::optional<std::int64_t> &seconds) {
    constexpr double hour = 3600;
    return seconds && *seconds > 0 ? roundedText(double(*seconds) / hour) + "h" : "–";
}

std::string reasonsText(const RiskRow &row) {
    std::vector<std::string> reasons;
    for (const ReasonLine &line : row.reasonLines)
        reasons.push_back(line.text);
    return join(reasons, " · ");
}

std::string figuresText(const RiskRow &row, const OutreachOutcome *outcome, Date now) {
    std::vector<std::string> figures;
    if (std::string score = scoreAndGradeText(row); !score.empty())
        figures.push_back(std::move(score));
    figures.push_back(lastActiveText(row.lastActivityAt, now));
    if (outcome != nullptr)
        figures.push_back(contactedText(*outcome));
    return join(figures, " · ");
}

std::vector<StudentFigure> studentFigures(const RiskRow &row, Date now) {
    std::string score = scoreText(row.currentScore);
    if (row.currentGrade && !row.currentGrade->empty())
        score += " " + collapsed(*row.currentGrade);
    return {
        {"Score", "Score", score},
        {"Missing", "Missing", std::to_string(row.missingCount)},
        {"Last active", "Active", lastActiveText(row.lastActivityAt, now)},
        {"Time in course", "Time", timeInCourseText(row.totalActivityTime)}};
}

std::string rowDescription(const RiskRow &row) {
    std::string text = collapsed(row.name);
    if (!row.reasonLines.empty())
        text += ". " + reasonsText(row);
    if (const std::size_t hidden = missingAssignments(row).size(); hidden > 0)
        text += ", " + moreAccessibleText(hidden);
    return text;
}

std::string_view arrowOf(const RosterChange &change) {
    return isWorse(change) ? "↑" : hasImproved(change) ? "↓" : "";
}

std::string_view arrowText(const RosterChange &change) {
    return isWorse(change)    ? "Slipped or newly flagged since your last visit."
        : hasImproved(change) ? "Improved since your last visit."
                              : "";
}

std::string_view followUpWord(const OutreachOutcome &outcome) {
    return isAwaitingFollowUp(outcome) ? outcomeWord(outcome) : "";
}

std::string contactedText(const OutreachOutcome &outcome) {
    std::string text = calendar::shortDay(outcome.contactedAt);
    const std::string_view word = followUpWord(outcome);
    if (!word.empty())
        text.append(", ").append(word);
    return text;
}

std::string studentsText(std::size_t count) {
    return plural(std::int64_t(count), "student");
}

std::string flaggedAcrossText(std::size_t flagged, std::size_t courses) {
    return std::to_string(flagged) + " flagged across " + plural(std::int64_t(courses), "course");
}

std::string moreText(std::size_t hidden) {
    return std::to_string(hidden) + " more";
}

std::string moreAccessibleText(std::size_t hidden) {
    return moreText(hidden) + " missing, press to show";
}

} // namespace ellwynd
