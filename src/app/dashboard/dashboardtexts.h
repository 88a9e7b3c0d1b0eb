// What the dashboard says, in the window and on the command line alike.
#pragma once

#include "app/dashboard/dashboardmodel.h"

namespace ellwynd {

struct TermMenuItem {
    std::string title;
    /// The term's id; 0 for Automatic.
    std::int64_t tag = 0;
    bool selected = false;

    bool operator==(const TermMenuItem &) const = default;
};
[[nodiscard]] std::vector<TermMenuItem> termMenu(const Dashboard &dashboard);

/// What stands in place of the cards; absent when the shown term has some.
[[nodiscard]] std::optional<std::string> waitLine(const Dashboard &dashboard);

/// "23 flagged across 6 courses"
[[nodiscard]] std::string headline(const DashboardTerm &term);
/// "17 students need attention in Fall 2026"; before the shown term is scored, the wait line.
[[nodiscard]] std::string attentionLine(const Dashboard &dashboard);
/// "Since last time: 4 slipped · 1 awaiting follow-up", or that nobody moved.
[[nodiscard]] std::string movementLine(const DashboardTerm &term);
/// "updated 9:41", and how far a running pass is.
[[nodiscard]] std::string stamp(const Dashboard &dashboard);

/// "3 At Risk"
[[nodiscard]] std::string levelCount(std::int64_t count, RiskLevel level);
/// "↑ 3  ↓ 1"; empty when nobody moved.
[[nodiscard]] std::string movementMarks(const DashboardCourseCard &card);
/// A card in words, for screen readers.
[[nodiscard]] std::string accessibleText(const DashboardCourseCard &card);
/// The help of a card's most missed assignment.
[[nodiscard]] std::string mostMissedHelp(const MostMissed &missed);

inline constexpr std::string_view trendHelp =
    "Flagged students over the last two weeks. The dot is today.";

/// What a word or a mark of the dashboard means.
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
