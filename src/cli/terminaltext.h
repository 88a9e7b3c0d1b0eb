// Texts from Canvas as a terminal shows them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ellwynd::cli {

/// The text on one line, without the characters that change the direction of what follows them.
/// A text with Hebrew or Arabic ends with a mark of no width, without which terminals that reorder
/// such text would move the figures that follow a name to its other side.
[[nodiscard]] std::string terminalText(std::string_view text);

/// The text, or its beginning and "…", in at most so many columns. @param columns at least 1.
[[nodiscard]] std::string fitted(std::string text, std::size_t columns);

/// The text in lines of at most so many columns, broken at blanks. A word that is longer stays
/// whole. At least one line.
[[nodiscard]] std::vector<std::string> wrapped(std::string_view text, std::size_t columns);

} // namespace ellwynd::cli
