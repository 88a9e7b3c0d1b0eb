#include "app/roster/rowsearch.h"

#include "app/find/comparabletext.h"

namespace ellwynd {

RowSearch::RowSearch(
    const SharedList<RiskRow> &rows, const std::map<std::int64_t, std::string> &courseCodes) {
    SharedTexts levels;
    SharedTexts courses;
    SharedTexts codes;
    SharedTexts assignments;
    ends.reserve(rows.size());
    endsOfTexts.reserve(rows.size());
    for (const RiskRow &row : rows) {
        textsOfRows.push_back(prepare(row.name));
        add(row.level ? std::int64_t(*row.level) : -1, levelName(row.level), levels);
        add(row.courseID, row.courseName, courses);
        if (const auto code = courseCodes.find(row.courseID); code != courseCodes.end())
            add(row.courseID, code->second, codes);
        for (const ReasonLine &line : row.reasonLines) {
            for (const ReasonLink &link : line.links) {
                if (const auto *assignment = std::get_if<AssignmentRef>(&link.target))
                    add(assignment->id, assignment->name, assignments);
            }
        }
        ends.push_back(textsOfRows.size());
    }
}

RowSearch::TextIndex RowSearch::prepare(std::string_view text) {
    appendComparable(text, texts);
    endsOfTexts.push_back(texts.size());
    return TextIndex(endsOfTexts.size() - 1);
}

/// Adds a text of the row that is added now.
/// @param id of what the text belongs to.
void RowSearch::add(std::int64_t id, std::string_view text, SharedTexts &known) {
    const auto [at, isNew] = known.try_emplace(id);
    if (isNew)
        at->second = prepare(text);
    textsOfRows.push_back(at->second);
}

std::vector<bool> RowSearch::rowsWith(const std::vector<std::string> &words) const {
    std::vector<bool> rows(ends.size(), true);
    std::vector<bool> contains(endsOfTexts.size());
    for (const std::string &word : words) {
        std::size_t begin = 0;
        for (std::size_t i = 0; i < endsOfTexts.size(); ++i) {
            const std::size_t size = endsOfTexts[i] - begin;
            contains[i] =
                std::string_view(texts).substr(begin, size).find(word) != std::string_view::npos;
            begin = endsOfTexts[i];
        }
        std::size_t at = 0;
        for (std::size_t row = 0; row < rows.size(); ++row) {
            bool found = false;
            for (; at < ends[row]; ++at)
                found = found || contains[textsOfRows[at]];
            rows[row] = rows[row] && found;
        }
    }
    return rows;
}

} // namespace ellwynd
