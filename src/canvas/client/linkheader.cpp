#include "canvas/client/linkheader.h"

#include <algorithm>

namespace ellwynd {

namespace {

std::string_view trimmed(std::string_view text, std::string_view characters) {
    const std::size_t first = text.find_first_not_of(characters);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

/// Calls `use` with every part of `text` between separators, until it returns true.
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
            return trimmed(segment, " ") == R"(rel="next")";
        });
        if (next)
            address = trimmed(trimmed(link.substr(0, semicolon), " "), "<>");
        return next;
    });
    return address;
}

} // namespace ellwynd
