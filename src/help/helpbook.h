// The program's help: topics in Markdown, which are compiled in, and their search.
#pragma once

#include "help/textsearch.h"

#include <string>
#include <string_view>
#include <vector>

namespace ellwynd {

/// A page of help. The target of a link to another topic is "topic:" and its id.
struct HelpTopic {
    /// The name of its file, "getting-started".
    std::string id;
    std::string title;
    /// Additional search terms, which the text may not contain.
    std::vector<std::string> keywords;
    /// Markdown without the title.
    std::string body;

    bool operator==(const HelpTopic &) const = default;
};

/// Commands with their keys, for the topic on keyboard shortcuts.
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
    /// Plain text around the first match; the beginning of the topic if only its title or its
    /// keywords match. Empty for a blank query.
    std::string snippet;
};

/// All topics in their order, the release notes last.
class HelpBook {
  public:
    static constexpr std::string_view releaseNotesID = "whats-new";

    explicit HelpBook(const std::vector<ShortcutGroup> &shortcuts = {});

    [[nodiscard]] const std::vector<HelpTopic> &topics() const { return pages; }

    /// Null for an unknown id.
    [[nodiscard]] const HelpTopic *find(std::string_view id) const;

    /// The topics that contain every word of the query or a word that begins with it, ignoring case
    /// and diacritics. Sorted by the number of matches in the title, then in the keywords, then by
    /// whether the text contains the query as a phrase. A blank query finds all topics in their
    /// order.
    [[nodiscard]] std::vector<HelpHit> search(std::string_view query) const;

  private:
    /// The searchable words of a topic.
    struct Index {
        std::vector<Word> title;
        std::vector<Word> keywords;
        std::string text;
        std::vector<Word> words;
    };

    std::vector<HelpTopic> pages;
    /// In the order of `pages`.
    std::vector<Index> indexes;
};

/// Parses a topic's file: "---", the lines "title: " and "keywords: ", "---", then the body.
/// @throws std::invalid_argument for any other text.
[[nodiscard]] HelpTopic parseTopic(std::string_view id, std::string_view file);

} // namespace ellwynd
