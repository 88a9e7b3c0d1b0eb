// Exports rosters as CSV and Markdown tables.
#pragma once

#include "memory/outreach.h"

namespace ellwynd {

enum class ExportFormat { csv, markdown };

/// The data for the cells of a table besides its rows. The references must outlive the call.
struct ExportSource {
    const ContactLog &contacts;
    const RosterHistory &history;
    Date now;
    /// Whether the rows are those of a whole term, which adds a column for the course.
    bool wholeTerm = false;
};

[[nodiscard]] std::vector<std::string> exportHeaders(bool wholeTerm);

/// One cell for each header; empty for missing values.
[[nodiscard]] std::vector<std::string> exportRow(const RiskRow &row, const ExportSource &source);

/// The outcome of a contact: "no change", "worse" or "improved", followed by
/// " — awaiting follow-up" if that applies.
[[nodiscard]] std::string outcomeLabel(const OutreachOutcome &outcome);

/// A header line and a line for each row, each ended by a line feed.
[[nodiscard]] std::string csv(const SharedList<RiskRow> &rows, const ExportSource &source);

/// A heading, the day of the export and a table.
/// @param title the name of the course or of the term.
[[nodiscard]] std::string
markdown(std::string_view title, const SharedList<RiskRow> &rows, const ExportSource &source);

/// The text in the given format.
[[nodiscard]] std::string exportText(
    ExportFormat format, std::string_view title, const SharedList<RiskRow> &rows,
    const ExportSource &source);

/// The suggested file name: "Ellwynd — Bio 101- Lab-Field — 2026-09-24.csv".
[[nodiscard]] std::string exportFileName(ExportFormat format, std::string_view title, Date now);
/// @param extension without a dot.
[[nodiscard]] std::string
exportFileName(std::string_view extension, std::string_view title, Date now);

} // namespace ellwynd
