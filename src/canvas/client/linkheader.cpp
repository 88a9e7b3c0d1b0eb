#include "canvas/client/linkheader.h"

#include "base/text.h"

#include <algorithm>

namespace ellwynd {

namespace {

/// Calls `use` with each part of `text` between separators until it returns true.
template<class Use>
bool split(std::string_view text, char separator, Use use) {
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        if (use(text.substr(begin, end - begin)))
            return true;
        begin = end + 1;
    }
    return false;
}

} // namespace

std::optional<std::string> nextLink(std::string_view header) {
    std::optional<std::string> address;
    split(header, ',', [&](std::string_view link) {
        const std::size_t semicolon = link.find(';');
        if (semicolon == std::string_view::npos)
            return false;
        const bool next = split(link.substr(semicolon + 1), ';', [](std::string_view segment) {
            return trim(segment, " ") == R"(rel="next")";
        });
        if (next)
            address = trim(trim(link.substr(0, semicolon), " "), "<>");
        return next;
    });
    return address;
}

} // namespace ellwynd
