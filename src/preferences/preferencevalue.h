// What a preference can hold, and its forms as text and as JSON.
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

/// One preference as it is stored: its type is part of it, so a bool stays a bool and 5 is not 5.0.
using PreferenceValue = std::variant<bool, std::int64_t, double, std::string, IDList>;

using PreferenceMap = std::map<std::string, PreferenceValue, std::less<>>;

/// Values to save, and keys to forget, which have none.
using PreferenceChanges = std::map<std::string, std::optional<PreferenceValue>, std::less<>>;

/// The whole number that a real is; absent for one with a fraction and for one outside 64 bits.
[[nodiscard]] std::optional<std::int64_t> wholeNumber(double real);

/// The value as a type, by the rules of every read in the program: a real may be given as an
/// integer, a whole number as a real, a boolean as 0 or 1, and nothing else converts. Absent when
/// it does not fit.
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

/// Reads a word as launch arguments are read: "YES", "NO", "true", "false", an integer, a real, and
/// otherwise the text itself.
[[nodiscard]] PreferenceValue parsePreferenceValue(std::string_view word);

/// The value as JSON.
[[nodiscard]] nlohmann::json asJSON(const PreferenceValue &value);
/// The value that JSON holds; absent for JSON of another shape, and for an integer outside 64 bits.
[[nodiscard]] std::optional<PreferenceValue> fromJSON(const nlohmann::json &value);

/// The value as JSON text; a real always shows that it is one ("5.0").
[[nodiscard]] std::string toJSON(const PreferenceValue &value);

} // namespace ellwynd
