// Small JSON files: read within limits, by type, and written in one form.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ellwynd {

/// Nesting that no file of the program comes near. A deeper one could exhaust the stack when it is
/// written again.
inline constexpr int maxJSONDepth = 64;

/// Reads a whole text. A number that is too large for a double, such as 1e999, becomes null, so
/// that it costs its key and not the file.
/// @throws FileError, in a sentence that quotes nothing of the text, for text that is not JSON and
///         for nesting beyond `maxDepth`.
[[nodiscard]] nlohmann::json parseJSON(std::string_view text, int maxDepth = maxJSONDepth);

/// The value of a key; a null value when there is no such key, or when `object` is no object. Valid
/// as long as `object`.
[[nodiscard]] const nlohmann::json &memberOf(const nlohmann::json &object, std::string_view key);

/// An integer of 64 bits with sign. Absent for every other value: a real such as 5.0, and an
/// integer beyond that range.
[[nodiscard]] std::optional<std::int64_t> integerOf(const nlohmann::json &value);

/// Any number. Absent for a value of another type.
[[nodiscard]] std::optional<double> numberOf(const nlohmann::json &value);

/// A string. Absent for a value of another type.
[[nodiscard]] std::optional<std::string> stringOf(const nlohmann::json &value);

/// The text of a file that people may look at: indented by two, with a line break at its end.
/// Invalid UTF-8 is replaced, so that any value can be written.
[[nodiscard]] std::string prettyJSON(const nlohmann::json &value);

} // namespace ellwynd
