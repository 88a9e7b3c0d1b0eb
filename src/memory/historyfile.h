// The format of the history file: a compact JSON array of entries.
#pragma once

#include "memory/historyvisit.h"

#include <string>
#include <string_view>

namespace ellwynd {

/// Unknown keys are ignored, unknown levels are kept. An entry with a number that is out of range,
/// or null, is left out.
/// @throws FileError for anything else, such as a missing key, a value of another type or a date
///         that is not an ISO 8601 instant.
[[nodiscard]] HistoryVisits decodeHistory(std::string_view text);

/// Keys are in the order of the record's members, dates in ISO 8601 to the second.
[[nodiscard]] std::string encodeHistory(const HistoryVisits &visits);

} // namespace ellwynd
