// The help of the program: topics in Markdown, compiled in, and how they are found.
#pragma once

#include "help/textsearch.h"

#include <string>
#include <string_view>
#include <vector>

namespace ellwynd {

/// One page of help. A link to another topic is written "topic:" and its id.
struct HelpTopic {
    /// The name of its file, "getting-started".
    std::string id;
    std::string title;
    /// Words that somebody may look for though the text does not use them.
    std::vector<std::string> keywords;
    /// Markdown without the title.
    std::string body;

    bool operator==(const HelpTopic &) const = default;
};

/// Commands with their keys as the caller has them, for the topic on keyboard shortcuts.
struct ShortcutGroup {
    struct Row {
        std::string command;
        /// "Ctrl+R, F5".
        std::string keys;
    };

    std::string title;
    std::vector<Row> rows;
};

/// A topic that a search found.
struct HelpHit {
    const HelpTopic *topic = nullptr;
    /// Plain text around the first place that was found; the beginning of the topic where only its
    /// title or its keywords were. Empty when nothing was searched for.
    std::string snippet;
};

/// All topics in their order, the release notes last.
class HelpBook {
  public:
    static constexpr std::string_view releaseNotesID = "whats-new";

    explicit HelpBook(const std::vector<ShortcutGroup> &shortcuts = {});

    [[nodiscard]] const std::vector<HelpTopic> &topics() const { return pages; }

    /// Null when there is no such topic.
    [[nodiscard]] const HelpTopic *find(std::string_view id) const;

    /// The topics that hold every word of the query, at least as the beginning of one of theirs:
    /// those with more of the words in their title first, then in their keywords, then those that
    /// hold the words in the query's own order. Case and diacritics do not matter. A blank query
    /// finds every topic, in the order of the book.
    [[nodiscard]] std::vector<HelpHit> search(std::string_view query) const;

  private:
    /// What is looked through for one topic.
    struct Index {
        std::vector<Word> title;
        std::vector<Word> keywords;
        std::string text;
        std::vector<Word> words;
    };

    std::vector<HelpTopic> pages;
    /// Beside `pages`, in their order.
    std::vector<Index> indexes;
};

/// A topic's file: "---", lines of "title: " and "keywords: ", "---", then the body.
/// @throws std::invalid_argument for a text of another form.
[[nodiscard]] HelpTopic parseTopic(std::string_view id, std::string_view file);

} // namespace ellwynd
