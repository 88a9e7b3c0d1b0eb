// What is done to texts in more than one place. Texts are UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ellwynd {

/// The white space of ASCII.
inline constexpr std::string_view whiteSpace = " \t\n\v\f\r";

/// The text without these characters at its two ends.
[[nodiscard]] std::string_view
trim(std::string_view text, std::string_view characters = whiteSpace);

/// The text in one line: every control character becomes a blank, so that no name from outside can
/// break a layout, forge a line of the log or move a terminal's cursor.
[[nodiscard]] std::string oneLine(std::string_view text);

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
/// emoji take two, combining marks none. A sequence of emoji that a terminal may draw as one counts
/// each of them.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

} // namespace ellwynd
