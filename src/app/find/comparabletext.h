// Texts in a form for comparing what was typed with names.
#pragma once

#include <QString>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ellwynd {

/// A character without case and accents, such as "o" for "Ö" and "ø", or "ss" for "ß"; empty for an
/// accent, an apostrophe and a character without a width.
[[nodiscard]] QString comparableCharacter(char32_t code);

[[nodiscard]] bool isApostrophe(char32_t code);

/// A text in a form for comparing, with the places of its units in the text.
struct ComparableText {
    QString text;
    /// For each unit of `text`, where its character begins and ends, in UTF-16 units.
    std::vector<std::size_t> begins;
    std::vector<std::size_t> ends;
};

/// @param text UTF-8.
[[nodiscard]] ComparableText comparableText(std::string_view text);
/// The same without the places, in UTF-8.
[[nodiscard]] std::string comparable(std::string_view text);
/// Adds it to a text.
void appendComparable(std::string_view text, std::string &to);

} // namespace ellwynd
