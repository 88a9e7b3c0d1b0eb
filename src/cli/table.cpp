#include "cli/table.h"

#include "app/find/foldedwords.h"
#include "base/text.h"
#include "cli/terminaltext.h"

#include <algorithm>
#include <map>
#include <numeric>

namespace ellwynd::cli {

static constexpr std::string_view gap = "  ";
/// The least width in which a column is continued on further lines.
static constexpr std::size_t narrowest = 24;

/// A name in the form in which the command line compares names.
static std::string folded(const std::string &name) {
    QString text;
    for (const FoldedWord &word : foldedWords(name))
        text += word.text + u' ';
    // A name without letters and digits.
    return text.isEmpty() ? terminalText(name) : text.toStdString();
}

void Table::add(std::vector<std::string> cells) {
    for (std::string &cell : cells)
        cell = terminalText(cell);
    rows.push_back(std::move(cells));
}

void Table::addIDs(
    const std::vector<std::int64_t> &ids, const std::vector<std::string> &names, bool all) {
    std::vector<std::string> compared;
    std::map<std::string, int> counts;
    for (const std::string &name : names)
        ++counts[compared.emplace_back(folded(name))];
    const auto isShown = [&](std::size_t row) { return all || counts.at(compared[row]) > 1; };
    std::vector<std::string> cells;
    for (std::size_t row = 0; row < rows.size(); ++row)
        cells.push_back(isShown(row) ? std::to_string(ids[row]) : std::string());
    if (std::ranges::all_of(cells, &std::string::empty))
        return;
    columns.insert(columns.begin(), {"ID", true});
    for (std::size_t row = 0; row < rows.size(); ++row)
        rows[row].insert(rows[row].begin(), std::move(cells[row]));
}

std::string Table::text(std::size_t limit) const {
    std::vector<std::size_t> widths;
    for (std::size_t c = 0; c < columns.size(); ++c) {
        std::size_t width = displayWidth(columns[c].header);
        for (const auto &row : rows)
            width = std::max(width, displayWidth(row[c]));
        widths.push_back(width);
    }
    const std::size_t last = columns.size() - 1;
    const std::string indent(
        std::accumulate(widths.begin(), widths.end() - 1, last * gap.size()), ' ');
    const bool wraps = limit >= indent.size() + narrowest && !columns[last].rightAligned;
    std::string result;
    const auto line = [&](const auto &cellOf) {
        std::string text;
        for (std::size_t c = 0; c < columns.size(); ++c) {
            const std::string &cell = cellOf(c);
            text += c > 0 ? gap : "";
            if (c == last && wraps) {
                text += join(wrapped(cell, limit - indent.size()), "\n" + indent);
                continue;
            }
            const std::string padding(widths[c] - displayWidth(cell), ' ');
            text += columns[c].rightAligned ? padding + cell : cell + padding;
        }
        text.erase(text.find_last_not_of(' ') + 1);
        result += text + "\n";
    };
    line([&](std::size_t c) -> const std::string & { return columns[c].header; });
    for (const auto &row : rows)
        line([&](std::size_t c) -> const std::string & { return row[c]; });
    return result;
}

} // namespace ellwynd::cli
