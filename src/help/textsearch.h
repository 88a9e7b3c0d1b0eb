// Splits texts into words for searching.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ellwynd {

/// A sequence of letters and digits. Apostrophes within it are ignored.
struct Word {
    /// Without case and diacritics.
    std::string folded;
    /// Its range in the text, in UTF-8 bytes, half-open.
    std::size_t begin = 0;
    std::size_t end = 0;
};

[[nodiscard]] std::vector<Word> wordsOf(std::string_view text);

/// How many of `words` begin with `prefix`.
/// @param prefix without case and diacritics.
[[nodiscard]] std::size_t occurrences(const std::vector<Word> &words, std::string_view prefix);

/// The index at which the words of a query follow each other, of which the last may be a prefix;
/// `words.size()` if they do not.
[[nodiscard]] std::size_t phraseAt(const std::vector<Word> &words, const std::vector<Word> &query);

/// The text of Markdown on one line, without markup, link targets and table rules.
[[nodiscard]] std::string plainText(std::string_view markdown);

/// About a hundred bytes of `text`: whole words from shortly before the word at index `at`, with
/// "…" where text was omitted.
[[nodiscard]] std::string
snippet(const std::string &text, const std::vector<Word> &words, std::size_t at);

} // namespace ellwynd
