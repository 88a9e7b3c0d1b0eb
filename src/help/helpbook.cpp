#include "help/helpbook.h"

#include "base/text.h"
#include "help/releasenotes.h"
#include "help/resources.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <tuple>

namespace ellwynd {

namespace {

/// The topics in the order of the book, by the names of their files.
constexpr std::string_view topicIDs[] = {
    "getting-started",
    "connecting",
    "sample-college",
    "roster",
    "finding",
    "signals",
    "figures",
    "reasons",
    "thresholds",
    "class-wide",
    "movement",
    "visits",
    "look-back",
    "contacts",
    "writing",
    "templates",
    "export",
    "printing",
    "dashboard",
    "widgets",
    "notices",
    "privacy",
    "sync",
    "appearance",
    "undo",
    "keyboard",
    "command-line",
    "troubleshooting",
    "keychain"};

constexpr std::string_view shortcutsPlaceholder = "{shortcuts}";
constexpr std::string_view withoutShortcuts =
    "The menus show the keys of each command beside its name.";

std::string escapedCell(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '|' || c == '*' || c == '_' || c == '`' || c == '\\' || c == '<' || c == '[')
            result += '\\';
        result += c;
    }
    return result;
}

std::string shortcutTables(const std::vector<ShortcutGroup> &groups) {
    std::string markdown;
    for (const ShortcutGroup &group : groups) {
        markdown += fmt::format(
            "{}## {}\n\n| Command | Keys |\n| --- | --- |\n", markdown.empty() ? "" : "\n",
            group.title);
        for (const auto &row : group.rows)
            markdown +=
                fmt::format("| {} | {} |\n", escapedCell(row.command), escapedCell(row.keys));
    }
    return markdown.empty() ? std::string(withoutShortcuts) : markdown;
}

void fillIn(std::string &body, std::string_view placeholder, const std::string &text) {
    if (const std::size_t at = body.find(placeholder); at != std::string::npos)
        body.replace(at, placeholder.size(), text);
}

HelpTopic releaseNotesTopic() {
    HelpTopic topic{
        .id = std::string(HelpBook::releaseNotesID),
        .title = "What's New in Ellwynd",
        .keywords = {"release notes", "version", "changes", "update", "history of versions"}};
    for (const Release &release : releases())
        topic.body += fmt::format("## Version {}\n\n{}\n", release.version, release.notes);
    return topic;
}

/// Words that questions contain and that say nothing about the topic.
constexpr std::string_view questionWords[] = {
    "a",    "about", "an",    "and",  "are",  "as",   "at",   "be",  "by",  "can",  "could",
    "did",  "do",    "does",  "for",  "from", "has",  "have", "how", "i",   "if",   "in",
    "is",   "it",    "its",   "me",   "my",   "of",   "on",   "or",  "our", "so",   "than",
    "that", "the",   "them",  "then", "they", "this", "to",   "was", "we",  "were", "what",
    "when", "where", "which", "will", "with", "you",  "your"};

/// The words that a topic should contain: all but those of a question, unless there are no others.
std::vector<Word> searchedWords(std::string_view query) {
    std::vector<Word> words = wordsOf(query);
    std::vector<Word> result;
    std::ranges::copy_if(words, std::back_inserter(result), [](const Word &word) {
        return std::ranges::find(questionWords, word.folded) == std::end(questionWords);
    });
    return result.empty() ? words : result;
}

/// Removes the first line from a text and returns it.
std::string_view takeLine(std::string_view &text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

/// The value of a heading line.
/// @param name "title: " or "keywords: ".
std::string_view field(std::string_view line, std::string_view name, std::string_view id) {
    if (!line.starts_with(name) || line.size() == name.size())
        throw std::invalid_argument(fmt::format("The help topic {} has no {}", id, name));
    return line.substr(name.size());
}

} // namespace

HelpTopic parseTopic(std::string_view id, std::string_view file) {
    HelpTopic topic{.id = std::string(id)};
    const bool opened = takeLine(file) == "---";
    topic.title = field(takeLine(file), "title: ", id);
    std::string_view words = field(takeLine(file), "keywords: ", id);
    const bool closed = takeLine(file) == "---";
    if (!opened || !closed)
        throw std::invalid_argument(fmt::format("The help topic {} has no heading", id));
    while (!words.empty()) {
        const std::size_t end = std::min(words.find(", "), words.size());
        topic.keywords.emplace_back(words.substr(0, end));
        words.remove_prefix(std::min(end + 2, words.size()));
    }
    file.remove_prefix(std::min(file.find_first_not_of('\n'), file.size()));
    topic.body = file;
    return topic;
}

HelpBook::HelpBook(const std::vector<ShortcutGroup> &shortcuts) {
    for (const std::string_view id : topicIDs) {
        pages.push_back(parseTopic(id, resourceText(fmt::format("topics/{}.md", id))));
        fillIn(pages.back().body, shortcutsPlaceholder, shortcutTables(shortcuts));
    }
    pages.push_back(releaseNotesTopic());
    for (const HelpTopic &topic : pages) {
        Index index{
            wordsOf(topic.title), wordsOf(join(topic.keywords, "\n")), plainText(topic.body)};
        index.words = wordsOf(index.text);
        indexes.push_back(std::move(index));
    }
}

const HelpTopic *HelpBook::find(std::string_view id) const {
    const auto found = std::ranges::find(pages, id, &HelpTopic::id);
    return found != pages.end() ? &*found : nullptr;
}

std::vector<HelpHit> HelpBook::search(std::string_view query) const {
    const std::vector<Word> wanted = searchedWords(query);
    // A question of several words may use one that the topic does not.
    constexpr std::size_t wordsForOneMissing = 3;
    const std::size_t allowedMissing = wanted.size() / wordsForOneMissing;
    const bool blank = query.find_first_not_of(" \t\r\n") == std::string_view::npos;
    /// Words that occur, matches in the title, matches in the keywords, whether the text contains
    /// the phrase.
    using Rank = std::tuple<std::size_t, std::size_t, std::size_t, bool>;
    std::vector<std::pair<Rank, HelpHit>> hits;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const Index &index = indexes[i];
        if (blank)
            hits.push_back({{}, {&pages[i], {}}});
        if (wanted.empty())
            continue;
        std::size_t inTitle = 0;
        std::size_t inKeywords = 0;
        std::size_t occurring = 0;
        std::size_t first = index.words.size();
        for (const Word &word : wanted) {
            const bool matchesTitle = occurrences(index.title, word.folded) > 0;
            const bool matchesKeyword = occurrences(index.keywords, word.folded) > 0;
            const auto match = std::ranges::find_if(index.words, [&](const Word &each) {
                return each.folded.starts_with(word.folded);
            });
            inTitle += matchesTitle ? 1 : 0;
            inKeywords += matchesKeyword ? 1 : 0;
            if (matchesTitle || matchesKeyword || match != index.words.end())
                ++occurring;
            first = std::min(first, std::size_t(match - index.words.begin()));
        }
        if (occurring + allowedMissing < wanted.size())
            continue;
        const std::size_t phrase = phraseAt(index.words, wanted);
        const bool hasPhrase = phrase < index.words.size();
        const std::size_t at = hasPhrase ? phrase : first < index.words.size() ? first : 0;
        hits.push_back(
            {{occurring, inTitle, inKeywords, hasPhrase},
             {&pages[i], snippet(index.text, index.words, at)}});
    }
    std::ranges::stable_sort(hits, std::greater{}, &std::pair<Rank, HelpHit>::first);
    std::vector<HelpHit> result;
    result.reserve(hits.size());
    for (auto &[rank, hit] : hits)
        result.push_back(std::move(hit));
    return result;
}

} // namespace ellwynd
