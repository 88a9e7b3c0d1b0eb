// Finds students, courses, terms and commands by the beginnings of their words.
#pragma once

#include "app/find/foldedwords.h"
#include "app/roster/rosterquery.h"
#include "base/date.h"
#include "risk/risklevel.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ellwynd {

/// What can be found; the order of equally good results.
enum class FoundKind { student, course, term, command };

/// Something that can be found. A student of several courses has one entry for each.
struct FindEntry {
    FoundKind kind = FoundKind::student;
    /// The name as it is in Canvas, or the command's text; may be empty.
    std::string title;
    /// The course of a student, the term of a course; may be empty.
    std::string detail;
    /// A student's level; absent for a student who is not flagged, and for everything else.
    std::optional<RiskLevel> level;
    /// The id of the student, the course or the term; absent for the courses without a term. For a
    /// command, its position in the list of the caller.
    std::optional<std::int64_t> id;
    /// The student's course, or the course itself; 0 for terms and commands.
    std::int64_t courseID = 0;
    /// When the term of a course, or the term itself, begins; absent if that is not known, and for
    /// everything else.
    std::optional<Date> beginsAt;
    /// Names that are searched but not shown, such as a sortable name or a course code.
    std::vector<std::string> otherNames;

    bool operator==(const FindEntry &) const = default;
};

/// Entries prepared for finding them while a name is typed. Letter case and accents are ignored.
class FindIndex {
  public:
    /// No query has more results.
    static constexpr std::size_t mostResults = 50;

    FindIndex() = default;
    /// @param suggestions the results of a blank query, in their order.
    explicit FindIndex(
        std::vector<FindEntry> entries, const std::vector<FindEntry> &suggestions = {});

    /// The entries of which each typed word begins a word, in any order, or whose initials are
    /// typed. Best first: whole names, beginnings of the title, beginnings of its words in order,
    /// beginnings of other words, initials; among these students with a level, worst first, then
    /// students, courses, terms and commands; courses and terms with the latest first.
    [[nodiscard]] std::vector<FindEntry> find(std::string_view typed) const;

    /// All entries of that whole name; without any, those with a word that begins with each of the
    /// typed words. Initials do not count. None for a text without a letter or a digit.
    [[nodiscard]] std::vector<FindEntry> named(std::string_view name) const;

  private:
    /// How well an entry matches; smaller is better.
    enum class Rank { whole, beginning, wordsInOrder, words, initials, none };
    struct Searched {
        FindEntry entry;
        /// The whole words of the title.
        std::vector<QString> title;
        /// The later beginnings in the title, and all beginnings in the other names.
        std::vector<QString> others;
        /// The title's words with one blank between them, then the same of each other name.
        std::vector<QString> names;
        QString initials;
    };
    struct Query;
    struct Match;

    [[nodiscard]] static Searched prepared(FindEntry entry);
    [[nodiscard]] static Rank rank(const Searched &searched, const Query &query);
    [[nodiscard]] static bool isBetter(const Match &a, const Match &b);
    [[nodiscard]] std::vector<Match> matches(const Query &query) const;

    std::vector<Searched> all;
    std::vector<FindEntry> suggested;
};

/// The parts of a title that are why it was found, in their order; none if another name was.
[[nodiscard]] std::vector<MatchedPart> foundParts(std::string_view title, std::string_view typed);

} // namespace ellwynd
