// The contents of printed rosters and of a printed student.
#pragma once

#include "app/roster/rostertexts.h"
#include "app/roster/rosterview.h"
#include "app/roster/studenthistory.h"

namespace ellwynd {

/// A student in a printed roster. Texts are one line each, and empty where the screen shows
/// nothing.
struct PrintedRow {
    std::string name;
    std::optional<RiskLevel> level;
    /// In the roster of a term, the course's code before the others.
    std::string figures;
    std::string reasons;
};

struct PrintedRoster {
    std::string title;
    /// "10 flagged students · printed Sep 24, 2026"
    std::string subtitle;
    std::vector<PrintedRow> rows;
};

/// @param flaggedOnly leaves out students without a level.
[[nodiscard]] PrintedRoster printedRoster(const RosterView &roster, bool flaggedOnly, Date now);

/// One student with everything that the details show.
struct PrintedStudent {
    struct Reason {
        std::string text;
        /// The names of the missing assignments.
        std::vector<std::string> assignments;
    };

    std::string name;
    /// The course, and the day of printing.
    std::string subtitle;
    std::optional<RiskLevel> level;
    /// Absent if the student's level has not changed since the last visit.
    std::string change;
    /// Labels and values.
    std::vector<StudentFigure> figures;
    std::vector<Reason> reasons;
    /// Absent with fewer than two recorded days.
    std::optional<TermTrend> trend;
    /// Sentences below the chart.
    std::vector<std::string> story;
    std::optional<Date> wroteAt;
    /// What happened since the last contact; empty if there was none.
    std::string outreach;
};

[[nodiscard]] PrintedStudent
printedStudent(const RiskRow &row, const StudentHistory &history, Date now);

} // namespace ellwynd
