// Rosters as tables that leave the program.
#pragma once

#include "memory/outreach.h"

#include <span>

namespace ellwynd {

enum class ExportFormat { csv, markdown };

/// What the cells of a table are made from besides its rows.
struct ExportSource {
    const ContactLog &contacts;
    const RosterHistory &history;
    Date now;
    /// A whole term's rows name their course.
    bool wholeTerm = false;
};

[[nodiscard]] std::vector<std::string> exportHeaders(bool wholeTerm);

/// One cell a header; what a student does not have is an empty cell.
[[nodiscard]] std::vector<std::string> exportRow(const RiskRow &row, const ExportSource &source);

/// What became of a contact: "no change", "worse" or "improved", and " — awaiting follow-up" where
/// it is.
[[nodiscard]] std::string outcomeLabel(const OutreachOutcome &outcome);

/// A header line and a line a row, in their order, each ended by one line feed.
[[nodiscard]] std::string csv(std::span<const RiskRow> rows, const ExportSource &source);

/// A heading, the day of the export and a table.
/// @param title the name of the course or of the term that is shown.
[[nodiscard]] std::string
markdown(std::string_view title, std::span<const RiskRow> rows, const ExportSource &source);

/// Either of the two.
[[nodiscard]] std::string exportText(
    ExportFormat format, std::string_view title, std::span<const RiskRow> rows,
    const ExportSource &source);

/// "Ellwynd — Bio 101- Lab-Field — 2026-09-24.csv": what a save panel begins with.
[[nodiscard]] std::string exportFileName(ExportFormat format, std::string_view title, Date now);

} // namespace ellwynd
