// The value of a preference, and its conversion from and to text and JSON.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ellwynd {

using IDList = std::vector<std::int64_t>;

/// A stored value. Its type is preserved: true is not 1, and 5 is not 5.0.
using PreferenceValue = std::variant<bool, std::int64_t, double, std::string, IDList>;

using PreferenceMap = std::map<std::string, PreferenceValue, std::less<>>;

/// Values to save by key; an absent value removes its key.
using PreferenceChanges = std::map<std::string, std::optional<PreferenceValue>, std::less<>>;

/// A real as an integer; absent if it has a fraction or does not fit 64 bits.
[[nodiscard]] std::optional<std::int64_t> wholeNumber(double real);

/// The value converted to a type: integers convert to reals, whole reals to integers, and 0 and 1
/// to booleans. Absent if there is no conversion.
template<class T>
[[nodiscard]] std::optional<T> valueAs(const PreferenceValue &value) {
    if (const T *same = std::get_if<T>(&value))
        return *same;
    const auto *integer = std::get_if<std::int64_t>(&value);
    if constexpr (std::is_same_v<T, double>) {
        if (integer != nullptr)
            return static_cast<double>(*integer);
    } else if constexpr (std::is_same_v<T, std::int64_t>) {
        if (const auto *real = std::get_if<double>(&value))
            return wholeNumber(*real);
    } else if constexpr (std::is_same_v<T, bool>) {
        const auto number = valueAs<std::int64_t>(value);
        if (number == 0 || number == 1)
            return number == 1;
    }
    return std::nullopt;
}

/// Parses a word of the command line: "YES", "NO", "true", "false", an integer, a real, or else a
/// text.
[[nodiscard]] PreferenceValue parsePreferenceValue(std::string_view word);

/// The value as JSON.
[[nodiscard]] nlohmann::json asJSON(const PreferenceValue &value);
/// The value of JSON; absent for other types of JSON, and for an integer outside 64 bits.
[[nodiscard]] std::optional<PreferenceValue> fromJSON(const nlohmann::json &value);

/// The value as JSON text; a real always has a decimal point or an exponent ("5.0").
[[nodiscard]] std::string toJSON(const PreferenceValue &value);

} // namespace ellwynd
