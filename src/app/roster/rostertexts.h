// A roster's figures as texts, for the windows and the command line.
#pragma once

#include "memory/movement.h"
#include "memory/outreach.h"

#include <string>

namespace ellwynd {

/// "never", "today", "yesterday" or "10 days ago". Today and yesterday are days of the user's
/// calendar; older days are counted as in the reasons, in whole times 24 hours.
[[nodiscard]] std::string lastActiveText(const std::optional<Date> &lastActivityAt, Date now);

/// "38% · F", or only one of them if the other is absent; empty without both.
[[nodiscard]] std::string scoreAndGradeText(const RiskRow &row);

/// "38%"; a dash if absent.
[[nodiscard]] std::string scoreText(const std::optional<double> &score);

/// "13h"; a dash if no time is recorded.
[[nodiscard]] std::string timeInCourseText(const std::optional<std::int64_t> &seconds);

/// The row's reasons joined by " · ".
[[nodiscard]] std::string reasonsText(const RiskRow &row);

/// The figures of a row in one line, without those that are absent: "38% · F · 10 days ago".
[[nodiscard]] std::string figuresText(const RiskRow &row, const OutreachOutcome *outcome, Date now);

/// A figure of a student with its name.
struct StudentFigure {
    std::string_view name;
    /// For narrow places.
    std::string_view shortName;
    std::string value;
};
/// "Score", "Missing", "Last active" and "Time in course".
[[nodiscard]] std::vector<StudentFigure> studentFigures(const RiskRow &row, Date now);

/// A row for screen readers: the name, the reasons, and how many names of missing work are hidden.
[[nodiscard]] std::string rowDescription(const RiskRow &row);

/// "↑" for a student doing worse, "↓" for one doing better; empty otherwise.
[[nodiscard]] std::string_view arrowOf(const RosterChange &change);

/// What the arrow means: "Slipped or newly flagged since your last visit."
[[nodiscard]] std::string_view arrowText(const RosterChange &change);

/// The outcome of a contact, for a column of the roster: "no change" or "worse" for a student
/// awaiting follow-up, otherwise empty.
[[nodiscard]] std::string_view followUpWord(const OutreachOutcome &outcome);

/// "Nov 12", or "Nov 12, no change" with a follow-up word.
[[nodiscard]] std::string contactedText(const OutreachOutcome &outcome);

/// "26 students".
[[nodiscard]] std::string studentsText(std::size_t count);

/// What is shown after "updated 9:41": "yesterday · refreshing…"; empty on the same day and while
/// nothing is being read.
[[nodiscard]] std::string stampNote(Date updatedAt, bool refreshing, Date now);

/// "3 flagged across 2 courses".
[[nodiscard]] std::string flaggedAcrossText(std::size_t flagged, std::size_t courses);

/// Shown in place of `hidden` links that do not fit in a row: "3 more".
[[nodiscard]] std::string moreText(std::size_t hidden);
/// The same for screen readers: "3 more missing, press to show".
[[nodiscard]] std::string moreAccessibleText(std::size_t hidden);

} // namespace ellwynd
