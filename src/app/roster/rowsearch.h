// Finds the rows that contain typed words.
#pragma once

#include "base/sharedlist.h"
#include "risk/riskrow.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ellwynd {

/// The texts of rows in a form for comparing: the names, levels, courses and missing assignments.
/// A text that many rows have, such as the name of an assignment, is prepared and searched once:
/// the rows of a course were read together, so a course or an assignment has one name in all of
/// them.
class RowSearch {
  public:
    /// @param courseCodes the short names of the courses.
    RowSearch(
        const SharedList<RiskRow> &rows, const std::map<std::int64_t, std::string> &courseCodes);

    /// For each row, whether each word occurs in one of its texts.
    /// @param words in a form for comparing, see `comparable`.
    [[nodiscard]] std::vector<bool> rowsWith(const std::vector<std::string> &words) const;

  private:
    using TextIndex = std::uint32_t;
    /// By the id of what the text belongs to.
    using SharedTexts = std::unordered_map<std::int64_t, TextIndex>;

    [[nodiscard]] TextIndex prepare(std::string_view text);
    void add(std::int64_t id, std::string_view text, SharedTexts &known);

    /// All texts one after the other, and where each ends.
    std::string texts;
    std::vector<std::size_t> endsOfTexts;
    /// The texts of all rows, row by row, as their numbers.
    std::vector<TextIndex> textsOfRows;
    /// Where the texts of each row end in `textsOfRows`.
    std::vector<std::size_t> ends;
};

} // namespace ellwynd
