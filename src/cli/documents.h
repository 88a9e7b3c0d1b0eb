// The JSON documents that commands print, and the same for people.
#pragma once

#include "app/rosterloader.h"

#include <nlohmann/json_fwd.hpp>

#include <span>

namespace ellwynd::cli {

using JSON = nlohmann::ordered_json;

/// One scored course as a roster document.
[[nodiscard]] JSON rosterDocument(const ScoredCourse &course);

/// One row of a roster document.
[[nodiscard]] JSON rowDocument(const RiskRow &row);

/// A document as text, ending with a line break.
[[nodiscard]] std::string printed(const JSON &document);

/// Rows as aligned columns, in their order; the course's column only for rows of several courses.
[[nodiscard]] std::string rowsTable(std::span<const RiskRow> rows, bool withCourse, Date now);

/// A course's heading, its rows and its most missed work, for people.
[[nodiscard]] std::string rosterText(const ScoredCourse &course, Date now);

} // namespace ellwynd::cli
