// The dashboard's texts, for the window and the command line.
#pragma once

#include "app/dashboard/dashboardmodel.h"

namespace ellwynd {

struct TermMenuItem {
    std::string title;
    /// The term's id; 0 for Automatic.
    std::int64_t tag = 0;
    bool selected = false;
    /// The courses that the last pass could not read; empty if it read them all.
    std::string note{};

    bool operator==(const TermMenuItem &) const = default;
};
/// "Automatic" and the nearby terms.
[[nodiscard]] std::vector<TermMenuItem> termMenu(const Dashboard &dashboard);

/// The text shown in place of the cards; absent once the shown term has been scored.
[[nodiscard]] std::optional<std::string> waitLine(const Dashboard &dashboard);

/// "23 flagged across 6 courses"
[[nodiscard]] std::string headline(const DashboardTerm &term);
/// "All 39 in Fall 2026 ›", the way to the term's roster.
[[nodiscard]] std::string allFlaggedText(const DashboardTerm &term);
/// "17 students need attention in Fall 2026"; before the shown term is scored, the wait line.
[[nodiscard]] std::string attentionLine(const Dashboard &dashboard);
/// "Since last time: 4 slipped · 1 awaiting follow-up", or "No movement since last time."
[[nodiscard]] std::string movementLine(const DashboardTerm &term);
/// "updated 09:41:00"; during a pass also its progress.
[[nodiscard]] std::string stamp(const Dashboard &dashboard);

/// "3 At Risk · 4 Watch", without the levels that nobody has; empty if nobody is flagged.
[[nodiscard]] std::string levelsText(const LevelCounts &levels, std::string_view separator = " · ");
/// "↑ 3   ↓ 1"; empty if no student's level changed.
[[nodiscard]] std::string movementMarks(const DashboardCourseCard &card);
/// A card's text for screen readers.
[[nodiscard]] std::string accessibleText(const DashboardCourseCard &card);
/// The numbers of a card's trend for screen readers; empty for a single day.
[[nodiscard]] std::string accessibleTrend(const DashboardCourseCard &card);
/// The tooltip of a card's most missed assignment.
[[nodiscard]] std::string mostMissedHelp(const MostMissed &missed);

inline constexpr std::string_view trendHelp =
    "Flagged students over the last two weeks. The dot is today.";

/// The explanation of a word or mark on the dashboard.
struct LegendEntry {
    std::string_view term;
    std::string_view meaning;
};
inline constexpr LegendEntry levelLegend[] = {
    {"At Risk", "several signals agree, or one is severe."},
    {"Concern", "a real pattern, not yet urgent."},
    {"Watch", "one mild signal, worth knowing."}};
inline constexpr LegendEntry markLegend[] = {
    {"↑", "Slipped or newly flagged since your last visit."},
    {"↓", "Improved since your last visit."},
    {"Awaiting follow-up", "written to a week or more ago and no better yet."}};

} // namespace ellwynd
