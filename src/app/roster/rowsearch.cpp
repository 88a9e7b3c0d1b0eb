#include "app/roster/rowsearch.h"

#include "app/find/comparabletext.h"

namespace ellwynd {

RowSearch::RowSearch(
    const SharedList<RiskRow> &rows, const std::map<std::int64_t, std::string> &courseCodes) {
    // The keys are texts of the rows and of the codes.
    Indices indices;
    indices.reserve(2 * rows.size());
    ends.reserve(rows.size());
    for (const RiskRow &row : rows) {
        add(row.name, indices);
        add(levelName(row.level), indices);
        add(row.courseName, indices);
        if (const auto code = courseCodes.find(row.courseID); code != courseCodes.end())
            add(code->second, indices);
        for (const ReasonLine &line : row.reasonLines) {
            for (const ReasonLink &link : line.links) {
                if (const auto *assignment = std::get_if<AssignmentRef>(&link.target))
                    add(assignment->name, indices);
            }
        }
        ends.push_back(textsOfRows.size());
    }
}

void RowSearch::add(std::string_view text, Indices &indices) {
    const auto [known, isNew] = indices.emplace(text, TextIndex(texts.size()));
    if (isNew)
        texts.push_back(comparable(text));
    textsOfRows.push_back(known->second);
}

std::vector<bool> RowSearch::rowsWith(const std::vector<std::string> &words) const {
    std::vector<bool> rows(ends.size(), true);
    std::vector<bool> contains(texts.size());
    for (const std::string &word : words) {
        for (std::size_t i = 0; i < texts.size(); ++i)
            contains[i] = texts[i].find(word) != std::string::npos;
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
