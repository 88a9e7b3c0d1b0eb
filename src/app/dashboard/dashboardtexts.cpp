#include "app/dashboard/dashboardtexts.h"

#include "app/roster/rostertexts.h"
#include "base/calendar.h"
#include "base/text.h"
#include "memory/movement.h"
#include "memory/outreach.h"
#include "risk/missedwork.h"

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr std::string_view nothingYet =
    "Your courses appear here once they load — or pick one from the sidebar.";

std::int64_t sum(const DashboardTerm &term, std::int64_t DashboardCourseCard::*figure) {
    std::int64_t total = 0;
    for (const DashboardCourseCard &card : term.cards)
        total += card.*figure;
    return total;
}

const TermGroup *find(const Dashboard &dashboard, std::optional<std::int64_t> id) {
    const auto found = std::ranges::find_if(
        dashboard.preparedTerms(), [&](const TermGroup &term) { return id && term.id() == *id; });
    return found != dashboard.preparedTerms().end() ? &*found : nullptr;
}

/// "Bio couldn’t be read", "Bio and 2 more couldn’t be read"; empty without courses.
std::string unreadableText(const std::vector<std::string> &courses) {
    if (courses.empty())
        return {};
    const std::string others =
        courses.size() > 1 ? fmt::format(" and {} more", courses.size() - 1) : "";
    return courses.front() + others + " couldn’t be read";
}

} // namespace

std::vector<TermMenuItem> termMenu(const Dashboard &dashboard) {
    const std::int64_t chosen = dashboard.chosenTermID();
    const TermGroup *automatic = find(dashboard, dashboard.model().automaticTermID);
    std::vector<TermMenuItem> items{
        {automatic != nullptr ? fmt::format("Automatic ({})", title(*automatic)) : "Automatic", 0,
         chosen == 0}};
    for (const TermGroup &term : dashboard.preparedTerms()) {
        items.push_back(
            {title(term), *term.id(), *term.id() == chosen,
             unreadableText(dashboard.failedCourses(*term.id()))});
    }
    return items;
}

std::optional<std::string> waitLine(const Dashboard &dashboard) {
    if (dashboard.shownTerm() != nullptr)
        return std::nullopt;
    const PassProgress &pass = dashboard.progress();
    const TermGroup *term = find(dashboard, dashboard.shownTermID());
    if (term == nullptr)
        return std::string(nothingYet);
    if (pass.running) {
        const auto remaining = pass.remaining.find(*term->id());
        const std::int64_t left = remaining != pass.remaining.end() ? remaining->second : 0;
        std::string line = left > 0
            ? fmt::format("Scoring {} — {} to go…", title(*term), plural(left, "course"))
            : fmt::format("Scoring your courses — {} of {}…", pass.done, pass.total);
        if (!dashboard.model().terms.empty())
            line += "  Other terms are ready in the menu.";
        return line;
    }
    return dashboard.lastPassFailed() ? "Couldn’t finish scoring — Refresh (⌘R) tries again."
                                      : std::string(nothingYet);
}

std::string headline(const DashboardTerm &term) {
    std::int64_t flagged = 0;
    for (const DashboardCourseCard &card : term.cards)
        flagged += card.flagged();
    return flaggedAcrossText(flagged, term.cards.size());
}

std::string allFlaggedText(const DashboardTerm &term) {
    return fmt::format("All {} in {} ›", term.students.size(), collapsed(term.title));
}

std::string attentionLine(const Dashboard &dashboard) {
    const DashboardTerm *term = dashboard.shownTerm();
    if (term == nullptr)
        return waitLine(dashboard).value_or(std::string());
    if (term->flaggedStudents == 0)
        return fmt::format("No student needs attention in {}.", term->title);
    return fmt::format(
        "{} {} attention in {}", plural(term->flaggedStudents, "student"),
        pluralForm(term->flaggedStudents, "needs", "need"), term->title);
}

std::string movementLine(const DashboardTerm &term) {
    return sinceLastTime(
               {{sum(term, &DashboardCourseCard::slipped), "slipped"},
                {sum(term, &DashboardCourseCard::newlyFlagged), "newly flagged"},
                {sum(term, &DashboardCourseCard::improved), "improved"},
                {sum(term, &DashboardCourseCard::awaitingFollowUp), "awaiting follow-up"}})
        .value_or("No movement since last time.");
}

std::string stamp(const Dashboard &dashboard) {
    const DashboardTerm *shown = dashboard.shownTerm();
    std::string text = "updated " +
        calendar::shortTime(shown != nullptr ? shown->updatedAt : dashboard.model().updatedAt);
    const PassProgress &pass = dashboard.progress();
    if (pass.running)
        text += fmt::format(" · still scoring — {} of {}…", pass.done, pass.total);
    return text;
}

std::string levelsText(const LevelCounts &levels, std::string_view separator) {
    std::vector<std::string> parts;
    for (const RiskLevel level : allRiskLevels) {
        if (levels[level] > 0)
            parts.push_back(fmt::format("{} {}", levels[level], levelName(level)));
    }
    return join(parts, separator);
}

std::string movementMarks(const DashboardCourseCard &card) {
    std::vector<std::string> marks;
    if (const std::int64_t worse = card.slipped + card.newlyFlagged; worse > 0)
        marks.push_back(fmt::format("↑ {}", worse));
    if (card.improved > 0)
        marks.push_back(fmt::format("↓ {}", card.improved));
    return join(marks, "   ");
}

std::string accessibleText(const DashboardCourseCard &card) {
    std::string text = card.name + ". ";
    if (card.flagged() == 0) {
        text += fmt::format("All {} students OK.", card.total);
    } else {
        std::vector<std::string> levels;
        if (card.levels.atRisk > 0)
            levels.push_back(fmt::format("{} at risk", card.levels.atRisk));
        if (card.levels.concern > 0)
            levels.push_back(fmt::format("{} concern", card.levels.concern));
        if (card.levels.watch > 0)
            levels.push_back(fmt::format("{} watch", card.levels.watch));
        text += fmt::format("{} students flagged: {}.", card.flagged(), join(levels, ", "));
    }
    if (const std::int64_t worse = card.slipped + card.newlyFlagged; worse > 0)
        text += fmt::format(" {} worse since last time.", worse);
    if (card.improved > 0)
        text += fmt::format(" {} improved.", card.improved);
    if (card.awaitingFollowUp > 0)
        text += fmt::format(" {}.", awaitingText(card.awaitingFollowUp));
    if (card.mostMissed)
        text += fmt::format(" Most missed: {}.", card.mostMissed->title);
    return text + " Opens the course.";
}

std::string accessibleTrend(const DashboardCourseCard &card) {
    if (card.trend.size() < 2)
        return {};
    std::vector<std::string> counts;
    for (const std::int64_t count : card.trend)
        counts.push_back(std::to_string(count));
    return "Flagged over the last two weeks: " + join(counts, ", ");
}

std::string mostMissedHelp(const MostMissed &missed) {
    const std::string text =
        fmt::format("{} students are missing this same assignment. ", missed.count) +
        "Open the course for the full list.";
    return missed.isClassWide ? fmt::format("{} {}", classWideTooltip, text) : text;
}

} // namespace ellwynd
