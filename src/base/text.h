// Small functions on UTF-8 texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ellwynd {

/// ASCII white space.
inline constexpr std::string_view whiteSpace = " \t\n\v\f\r";

/// Whether a character is one of the ten ASCII digits.
[[nodiscard]] constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The text without these characters at its two ends.
[[nodiscard]] std::string_view
trim(std::string_view text, std::string_view characters = whiteSpace);

/// The text with every control character replaced by a blank, so that a name from Canvas cannot
/// break a layout, forge a log line or move a terminal's cursor.
[[nodiscard]] std::string oneLine(std::string_view text);

/// The text on one line, with "…" in place of what follows `maxLength` characters.
[[nodiscard]] std::string shortened(std::string_view text, std::size_t maxLength);

/// `one` for a count of 1, else `many`.
[[nodiscard]] constexpr std::string_view
pluralForm(std::int64_t count, std::string_view one, std::string_view many) {
    return count == 1 ? one : many;
}

/// "1 course", "2 courses".
/// @param noun the singular of a noun whose plural ends in "s".
[[nodiscard]] std::string plural(std::int64_t count, std::string_view noun);

/// "a, b, c" for the separator ", ".
[[nodiscard]] std::string join(const std::vector<std::string> &texts, std::string_view separator);

/// How many columns of a terminal the text takes, in any locale: East Asian wide characters and
/// emoji take two, combining marks none. Every emoji of a joined sequence is counted.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

} // namespace ellwynd
