#include "app/print/printedtexts.h"

#include "app/courses/courselabel.h"
#include "app/roster/rostertexts.h"
#include "base/calendar.h"
#include "base/text.h"

#include <fmt/format.h>

namespace ellwynd {

namespace {

/// A longer name would need most of a page.
constexpr std::size_t maxNameLength = 200;

std::string nameOf(const std::string &name) {
    return shortened(collapsed(name), maxNameLength);
}

std::string printedOn(Date now) {
    return "printed " + calendar::dayKey(now);
}

/// On paper the figures have no headings, so they are named.
std::string figuresOf(const RosterView &roster, const RiskRow &row, Date now) {
    std::vector<std::string> figures;
    if (const auto code = roster.courseCodes.find(row.courseID);
        !roster.courseID && code != roster.courseCodes.end())
        figures.push_back(code->second);
    if (std::string score = scoreAndGradeText(row); !score.empty())
        figures.push_back(std::move(score));
    figures.push_back("last active " + lastActiveText(row.lastActivityAt, now));
    if (const auto since = roster.outreach.find(keyOf(row)); since != roster.outreach.end())
        figures.push_back("contacted " + contactedText(since->second));
    return collapsed(join(figures, " · "));
}

} // namespace

PrintedRoster printedRoster(const RosterView &roster, bool flaggedOnly, Date now) {
    PrintedRoster printed{.title = nameOf(roster.title), .subtitle = {}, .rows = {}};
    for (const RiskRow &row : roster.rows) {
        if (row.level || !flaggedOnly)
            printed.rows.push_back(
                {.name = nameOf(row.name),
                 .level = row.level,
                 .figures = figuresOf(roster, row, now),
                 .reasons = collapsed(reasonsText(row))});
    }
    const auto count = std::int64_t(printed.rows.size());
    printed.subtitle = fmt::format(
        "{} · {}", plural(count, flaggedOnly ? "flagged student" : "student"), printedOn(now));
    return printed;
}

PrintedStudent printedStudent(const RiskRow &row, const StudentHistory &history, Date now) {
    PrintedStudent printed{
        .name = nameOf(row.name),
        .subtitle = collapsed(row.courseName) + " · " + printedOn(now),
        .level = row.level};
    if (history.change)
        printed.change = changeText(*history.change);
    printed.figures = studentFigures(row, now);
    for (const ReasonLine &line : row.reasonLines) {
        PrintedStudent::Reason reason{.text = collapsed(line.text), .assignments = {}};
        if (line.role == ReasonRole::missingWork) {
            for (const AssignmentRef &missing : missingAssignments(row))
                reason.assignments.push_back(collapsed(missing.name));
        }
        printed.reasons.push_back(std::move(reason));
    }
    if (row.reasonLines.empty())
        printed.reasons.push_back({.text = "No reasons for concern.", .assignments = {}});
    printed.trend = history.trend;
    if (history.trend) {
        printed.story.push_back(termStory(*history.trend));
        if (history.levelDiffers)
            printed.story.push_back(
                levelDiffersText(row.level, history.trend->points.back().level));
    }
    if (history.outreach) {
        printed.wroteAt = history.outreach->contactedAt;
        printed.outreach = outreachText(*history.outreach);
    }
    return printed;
}

} // namespace ellwynd
