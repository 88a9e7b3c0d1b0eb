// Words of a text as a search compares them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ellwynd {

/// A run of letters and digits. Apostrophes belong to it and do not count.
struct Word {
    /// Without case and diacritics.
    std::string folded;
    /// Its range in the text, in UTF-8 bytes, half-open.
    std::size_t begin = 0;
    std::size_t end = 0;
};

[[nodiscard]] std::vector<Word> wordsOf(std::string_view text);

/// How many of `words` begin with a word.
[[nodiscard]] std::size_t occurrences(const std::vector<Word> &words, std::string_view folded);

/// Where the words of a query follow one after the other, the last at least begun; `words.size()`
/// when they do not.
[[nodiscard]] std::size_t phraseAt(const std::vector<Word> &words, const std::vector<Word> &query);

/// What a reader of Markdown sees, on one line: no marks, the text of links, the cells of tables.
[[nodiscard]] std::string plainText(std::string_view markdown);

/// About a hundred bytes of `text`, whole words from a little before `at`, an index into `words`,
/// with "…" where something was left out.
[[nodiscard]] std::string
snippet(const std::string &text, const std::vector<Word> &words, std::size_t at);

} // namespace ellwynd
