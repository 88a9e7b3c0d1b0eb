// Which students of a roster are shown, and in which order.
#pragma once

#include "app/roster/rosterview.h"
#include "app/roster/rowsearch.h"

#include <array>
#include <bitset>
#include <set>

namespace ellwynd {

/// The filters above a roster, each with a count.
enum class RosterChip { flagged, worse, improved, notYetReached, awaitingFollowUp, everyone };
inline constexpr std::array allRosterChips{RosterChip::flagged,          RosterChip::worse,
                                           RosterChip::improved,         RosterChip::notYetReached,
                                           RosterChip::awaitingFollowUp, RosterChip::everyone};

/// "Not yet reached".
[[nodiscard]] std::string_view chipName(RosterChip chip);

/// What the rows are sorted by; the roster's own order is worst first.
enum class RosterSort { worstFirst, level, student, course, score, lastActive, contacted };
inline constexpr std::array allRosterSorts{
    RosterSort::worstFirst, RosterSort::level,      RosterSort::student,  RosterSort::course,
    RosterSort::score,      RosterSort::lastActive, RosterSort::contacted};

/// "Last Active".
[[nodiscard]] std::string_view sortName(RosterSort sort);

/// What the teacher asked to see.
struct RosterQuery {
    RosterChip chip = RosterChip::flagged;
    /// As typed into the filter field.
    std::string typed;
    /// Only the students who are missing this assignment.
    std::optional<AssignmentRef> missing;
    RosterSort sort = RosterSort::worstFirst;
    bool descending = false;

    bool operator==(const RosterQuery &) const = default;
};

/// The rows of a query.
struct ShownRows {
    /// Positions in the roster's rows, from top to bottom.
    std::vector<std::size_t> order;
    /// How many students without a flag are folded into one line below the flagged ones.
    std::size_t folded = 0;
};

/// A roster prepared for counting, finding and sorting.
class RosterRows {
  public:
    RosterRows() = default;
    explicit RosterRows(const RosterView &roster);

    [[nodiscard]] const SharedList<RiskRow> &rows() const { return all; }
    /// The student's movement; null for none. Valid as long as this object.
    [[nodiscard]] const RosterChange *change(const RiskRow &row) const;
    /// The outcome of the student's last contact; null for none. Valid as long as this object.
    [[nodiscard]] const OutreachOutcome *outcome(const RiskRow &row) const;
    /// The short name of a row's course.
    [[nodiscard]] const std::string &courseCode(const RiskRow &row) const;
    /// What students are sorted by: the sortable name, else the name.
    [[nodiscard]] const std::string &sortName(const RiskRow &row) const;

    /// The chips that can show something: a term has no movement and only flagged students, and
    /// without a memory of contacts nobody is known to be reached.
    [[nodiscard]] std::vector<RosterChip> chips() const;
    [[nodiscard]] std::size_t count(RosterChip chip) const;

    /// Every typed word must occur in the student's name, level, course or missing assignments. If
    /// no flagged student matches what is typed, the others are searched too.
    [[nodiscard]] ShownRows shown(const RosterQuery &query) const;
    /// The query itself if it shows all of these students who are on the roster; otherwise one
    /// without a filter that does.
    [[nodiscard]] RosterQuery
    revealing(const RosterQuery &query, const std::set<StudentKey> &students) const;

  private:
    using Chips = std::bitset<allRosterChips.size()>;
    [[nodiscard]] Chips chipsOf(const RiskRow &row) const;
    void sort(std::vector<std::size_t> &order, const RosterQuery &query) const;

    SharedList<RiskRow> all;
    std::map<StudentKey, RosterChange> movement;
    std::map<StudentKey, OutreachOutcome> outreach;
    std::map<std::int64_t, std::string> courseCodes;
    bool oneCourse = true;
    bool remembersContacts = true;
    /// The chips that each row belongs to.
    std::vector<Chips> chipsOfRows;
    /// Made by the first search.
    mutable std::shared_ptr<const RowSearch> search;
};

/// The typed words in a form for comparing: without case, accents and apostrophes.
[[nodiscard]] std::vector<std::string> searchWords(std::string_view typed);

/// A part of a name, in UTF-16 units.
struct MatchedPart {
    std::size_t begin = 0;
    std::size_t length = 0;

    bool operator==(const MatchedPart &) const = default;
};
/// Where the typed words occur in a text, in their order of typing; each word's first occurrence.
[[nodiscard]] std::vector<MatchedPart> matchedParts(std::string_view text, std::string_view typed);

/// The names of the missing assignments that a typed word occurs in, if it does not occur in the
/// student's name, level or course: "Missing Homework 5, Quiz 2". Empty for none.
[[nodiscard]] std::string
matchedAssignmentsText(const RiskRow &row, const std::string &courseCode, std::string_view typed);

/// "16 students without a flag".
[[nodiscard]] std::string foldedText(std::size_t count);

/// "Sorted by Student"; empty for worst first.
[[nodiscard]] std::string sortedByText(const RosterQuery &query);
/// The query after an order was chosen: the first time ascending, then descending, then worst
/// first again.
[[nodiscard]] RosterQuery sortedBy(RosterQuery query, RosterSort sort);

/// What is shown when no student matches: "No flagged student matches “zoe”."
[[nodiscard]] std::string emptyText(const RosterQuery &query);
/// The command that leads back from there.
[[nodiscard]] std::string_view resetText(const RosterQuery &query);
/// The query after this command, and after Escape: the flagged students, or everyone if everyone
/// was shown. The order is kept.
[[nodiscard]] RosterQuery withoutFilter(const RosterQuery &query);

/// How many sentences fit into a row.
struct FittedReasons {
    std::size_t shown = 0;
    /// "and 1 more reason"; empty if all are shown.
    std::string more;
};
/// As many of the row's sentences as fit, at least one, with the number of the others.
/// @param fits whether a text fits.
template<class Fits>
[[nodiscard]] FittedReasons fittedReasons(const RiskRow &row, Fits fits);

/// "and 2 more reasons".
[[nodiscard]] std::string moreReasonsText(std::size_t hidden);

template<class Fits>
FittedReasons fittedReasons(const RiskRow &row, Fits fits) {
    const std::size_t count = row.reasonLines.size();
    for (std::size_t shown = count; shown > 0; --shown) {
        std::string text;
        for (std::size_t i = 0; i < shown; ++i)
            text += (text.empty() ? "" : " · ") + row.reasonLines[i].text;
        std::string more = shown < count ? moreReasonsText(count - shown) : std::string();
        if (!more.empty())
            text.append(" ").append(more);
        if (shown == 1 || fits(text))
            return {.shown = shown, .more = std::move(more)};
    }
    return {};
}

} // namespace ellwynd
