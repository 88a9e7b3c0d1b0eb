// The JSON documents that commands print, and their plain-text forms.
#pragma once

#include "app/roster/rosterview.h"

#include <nlohmann/json_fwd.hpp>

namespace ellwynd::cli {

using JSON = nlohmann::ordered_json;

/// What is remembered of a roster's students; empty when no store was read.
struct RosterMemory {
    std::vector<RosterChange> movement;
    std::map<StudentKey, OutreachOutcome> outreach;

    [[nodiscard]] std::optional<OutreachOutcome> outcomeOf(const RiskRow &row) const;
};

/// One scored course as a roster document.
[[nodiscard]] JSON rosterDocument(const ScoredCourse &course, const RosterMemory &memory);

/// One row of a roster document.
[[nodiscard]] JSON rowDocument(const RiskRow &row, const std::optional<OutreachOutcome> &outreach);

/// A document as text, ending with a line break.
[[nodiscard]] std::string printed(const JSON &document);

/// How `rowsTable` lays rows out.
struct RowsLayout {
    /// Adds the course column, for rows of several courses.
    bool withCourse = false;
    /// Adds the id of every student; otherwise only of those whose names are alike.
    bool withIDs = false;
    Date now;
    RosterMemory memory;
    /// As in `Table::text`.
    std::size_t columns = 0;
};

/// Rows as aligned columns, in their order. The contact column appears when any row has a contact.
[[nodiscard]] std::string rowsTable(const SharedList<RiskRow> &rows, const RowsLayout &layout);

/// A course's heading, rows and most missed work as plain text.
[[nodiscard]] std::string rosterText(const ScoredCourse &course, const RowsLayout &layout);

} // namespace ellwynd::cli
