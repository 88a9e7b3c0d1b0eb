// The words of a name in a form for comparing.
#pragma once

#include <QString>

#include <cstddef>
#include <string_view>
#include <vector>

namespace ellwynd {

/// A sequence of letters, digits and symbols such as emoji, or the rest of one from a place where a
/// reader sees a new beginning: "Brien" in "O'Brien", and each character of a Chinese, Japanese or
/// Korean name.
struct FoldedWord {
    /// Without case, accents and apostrophes; never empty.
    QString text;
    /// Where it begins in the name, in UTF-16 units.
    std::size_t begin = 0;
    /// For each unit of `text`, where its character ends in the name, in UTF-16 units.
    std::vector<std::size_t> ends;
    /// Whether it is a whole word.
    bool isWhole = true;
};

/// The words of a UTF-8 text in their order, each followed by its later beginnings.
[[nodiscard]] std::vector<FoldedWord> foldedWords(std::string_view text);

} // namespace ellwynd
