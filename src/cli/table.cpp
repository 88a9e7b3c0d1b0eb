#include "cli/table.h"

#include "base/text.h"

#include <algorithm>

namespace ellwynd::cli {

void Table::add(std::vector<std::string> cells) {
    for (std::string &cell : cells)
        cell = oneLine(cell);
    rows.push_back(std::move(cells));
}

std::string Table::text() const {
    std::vector<std::size_t> widths;
    for (std::size_t c = 0; c < columns.size(); ++c) {
        std::size_t width = displayWidth(columns[c].header);
        for (const auto &row : rows)
            width = std::max(width, displayWidth(row[c]));
        widths.push_back(width);
    }
    std::string result;
    const auto line = [&](const auto &cellOf) {
        std::string text;
        for (std::size_t c = 0; c < columns.size(); ++c) {
            const std::string &cell = cellOf(c);
            const std::string padding(widths[c] - displayWidth(cell), ' ');
            text +=
                (c > 0 ? "  " : "") + (columns[c].rightAligned ? padding + cell : cell + padding);
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
