// The history as its file holds it: one compact JSON array of entries.
#pragma once

#include "memory/rostersnapshot.h"

#include <string_view>
#include <vector>

namespace ellwynd {

/// Reads the whole file's text. Unknown keys are passed over, unknown levels kept.
/// @throws FileError, saying what is wrong, for anything else: a key missing, a value of another
///         type, a date that is not an ISO 8601 instant.
[[nodiscard]] std::vector<RosterSnapshot> decodeHistory(std::string_view text);

/// Keys in the order of the record's fields, dates in ISO 8601 to the second.
[[nodiscard]] std::string encodeHistory(const std::vector<RosterSnapshot> &entries);

} // namespace ellwynd
