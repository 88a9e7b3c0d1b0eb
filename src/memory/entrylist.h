// Reading files that are JSON arrays of entries.
#pragma once

#include <cstdint>
#include <optional>
#include <simdjson.h>
#include <string_view>

namespace ellwynd::entryList {

/// Parses a text. A number that is too large for a double, such as 1e999, is read as null.
/// @return valid until the parser is used again.
/// @throws FileError for a text that is not a JSON array.
[[nodiscard]] simdjson::dom::array parse(simdjson::dom::parser &parser, std::string_view text);

// The functions below throw a FileError that names the entry and the key, but quotes no value.

/// @param index of the entry, for the message.
[[nodiscard]] simdjson::dom::object objectOf(simdjson::dom::element entry, std::size_t index);

[[nodiscard]] std::string_view
textOf(simdjson::dom::object entry, std::size_t index, std::string_view key);

/// Absent for a number that is out of range, and for null.
[[nodiscard]] std::optional<std::int64_t>
integerOf(simdjson::dom::object entry, std::size_t index, std::string_view key);

/// Any number; absent for null.
[[nodiscard]] std::optional<double>
numberOf(simdjson::dom::object entry, std::size_t index, std::string_view key);

} // namespace ellwynd::entryList
