#include "cli/table.h"

#include <algorithm>
#include <cstdint>

namespace ellwynd::cli {

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
        std::uint32_t code = length == 1 ? lead : lead & (0x7fU >> length);
        for (std::size_t k = 1; k < length && i + k < text.size(); ++k)
            code = (code << 6U) | (static_cast<unsigned char>(text[i + k]) & 0x3fU);
        i += length;
        const bool combining = (code >= 0x300 && code <= 0x36f) || code == 0x200b ||
            (code >= 0x200e && code <= 0x200f) || (code >= 0x202a && code <= 0x202e);
        const bool wide = (code >= 0x1100 && code <= 0x115f) ||
            (code >= 0x2e80 && code <= 0xa4cf) || (code >= 0xac00 && code <= 0xd7a3) ||
            (code >= 0xf900 && code <= 0xfaff) || (code >= 0xfe30 && code <= 0xfe6f) ||
            (code >= 0xff00 && code <= 0xff60) || (code >= 0x1f300 && code <= 0x1faff) ||
            (code >= 0x20000 && code <= 0x3fffd);
        width += combining ? 0 : wide ? 2 : 1;
    }
    return width;
}

std::string printable(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        // U+0080 to U+009F are control characters as well, two bytes each in UTF-8.
        const bool c1 =
            byte == 0xc2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xa0;
        if (c1)
            ++i;
        result += c1 || byte < 0x20 || byte == 0x7f ? ' ' : text[i];
    }
    return result;
}

void Table::add(std::vector<std::string> cells) {
    for (std::string &cell : cells)
        cell = printable(cell);
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
