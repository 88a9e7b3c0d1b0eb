#include "help/textsearch.h"

#include <QList>
#include <QString>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr std::size_t snippetBytes = 110;
constexpr std::size_t wordsBefore = 4;

QString folded(const QString &word) {
    QString result;
    for (const QChar c : word.normalized(QString::NormalizationForm_KD)) {
        if (!c.isMark() && c != u'\'' && c != u'’')
            result += c;
    }
    return result.toCaseFolded();
}

bool isSpace(char c) {
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

/// Whether a line separates a table's header, such as "| --- | ---: |".
bool isTableRule(std::string_view line) {
    return line.starts_with('|') && line.find_first_not_of("|-: ") == std::string_view::npos;
}

/// A line of Markdown without the markup at its beginning.
std::string_view withoutMarker(std::string_view line) {
    const std::size_t text = line.find_first_not_of(" #>");
    line.remove_prefix(std::min(text, line.size()));
    if (line.starts_with("- "))
        line.remove_prefix(2);
    return line;
}

void appendInline(std::string &result, std::string_view line) {
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '*' || c == '`' || c == '[' || c == '\\')
            continue;
        if (c == ']' && line.substr(i + 1).starts_with('(')) {
            // Skip the target of the link.
            i = std::min(line.find(')', i), line.size() - 1);
            continue;
        }
        if (isSpace(c) || c == '|') {
            if (!result.empty() && result.back() != ' ')
                result += ' ';
        } else {
            result += c;
        }
    }
    if (!result.empty() && result.back() != ' ')
        result += ' ';
}

} // namespace

std::vector<Word> wordsOf(std::string_view text) {
    std::vector<Word> words;
    QString current;
    std::size_t begin = 0;
    std::size_t at = 0;
    const auto finish = [&] {
        if (const QString word = folded(current); !word.isEmpty())
            words.push_back({word.toStdString(), begin, at});
        current.clear();
    };
    const QString all = QString::fromUtf8(text.data(), qsizetype(text.size()));
    for (const char32_t code : all.toUcs4()) {
        const QString character = QString::fromUcs4(&code, 1);
        const bool apostrophe = code == u'\'' || code == u'’';
        if (QChar::isLetterOrNumber(code) || QChar::isMark(code) ||
            (apostrophe && !current.isEmpty())) {
            if (current.isEmpty())
                begin = at;
            current += character;
        } else {
            finish();
        }
        at += std::size_t(character.toUtf8().size());
    }
    finish();
    return words;
}

std::size_t occurrences(const std::vector<Word> &words, std::string_view prefix) {
    return std::size_t(std::ranges::count_if(
        words, [prefix](const Word &word) { return word.folded.starts_with(prefix); }));
}

std::size_t phraseAt(const std::vector<Word> &words, const std::vector<Word> &query) {
    const auto same = [&query](const Word &word, const Word &wanted) {
        return &wanted == &query.back() ? word.folded.starts_with(wanted.folded)
                                        : word.folded == wanted.folded;
    };
    return std::size_t(
        std::search(words.begin(), words.end(), query.begin(), query.end(), same) - words.begin());
}

std::string plainText(std::string_view markdown) {
    std::string result;
    while (!markdown.empty()) {
        const std::size_t end = std::min(markdown.find('\n'), markdown.size());
        const std::string_view line = markdown.substr(0, end);
        if (!isTableRule(line))
            appendInline(result, withoutMarker(line));
        markdown.remove_prefix(std::min(end + 1, markdown.size()));
    }
    while (!result.empty() && result.back() == ' ')
        result.pop_back();
    return result;
}

std::string snippet(const std::string &text, const std::vector<Word> &words, std::size_t at) {
    if (words.empty())
        return {};
    const std::size_t first = at > wordsBefore ? at - wordsBefore : 0;
    std::size_t last = first;
    while (last + 1 < words.size() && words[last + 1].end - words[first].begin <= snippetBytes)
        ++last;
    const bool whole = last + 1 == words.size();
    const std::size_t begin = first == 0 ? 0 : words[first].begin;
    const std::size_t end = whole ? text.size() : words[last].end;
    return (first == 0 ? "" : "…") + text.substr(begin, end - begin) + (whole ? "" : "…");
}

} // namespace ellwynd
