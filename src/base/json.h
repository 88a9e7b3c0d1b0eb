// Parsing JSON within limits, reading values by type, and writing files.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ellwynd {

/// Far more than any file of the program needs. Deeper nesting could exhaust the stack when it is
/// serialised.
inline constexpr int maxJSONDepth = 64;

/// Parses a text. A number that is too large for a double, such as 1e999, becomes null, so that
/// only its key is lost and not the whole file.
/// @throws FileError for text that is not JSON and for nesting beyond `maxDepth`; its message does
///         not quote the text.
[[nodiscard]] nlohmann::json parseJSON(std::string_view text, int maxDepth = maxJSONDepth);

/// The value of a key; a null value when there is no such key, or `object` is not an object. Valid
/// as long as `object`.
[[nodiscard]] const nlohmann::json &memberOf(const nlohmann::json &object, std::string_view key);

/// A signed 64-bit integer. Absent for any other value, including a real such as 5.0 and an integer
/// outside that range.
[[nodiscard]] std::optional<std::int64_t> integerOf(const nlohmann::json &value);

/// Any number. Absent for a value of another type.
[[nodiscard]] std::optional<double> numberOf(const nlohmann::json &value);

/// Whether a key's value is a number that no 64-bit integer and no date can hold. One that
/// `parseJSON` read as null counts, so any null does; a missing key and values of other types do
/// not. An entry of a list is skipped for such a number, so that it does not cost the whole file.
[[nodiscard]] bool isOutOfRange(const nlohmann::json &object, std::string_view key);

/// A string. Absent for a value of another type.
[[nodiscard]] std::optional<std::string> stringOf(const nlohmann::json &value);

/// JSON text for files that people may read: indented by two blanks, with a final line break.
/// Invalid UTF-8 is replaced, so that any value can be written.
[[nodiscard]] std::string prettyJSON(const nlohmann::json &value);

} // namespace ellwynd
