#include "app/shell/deeplink.h"

#include "base/text.h"

#include <algorithm>
#include <charconv>

namespace ellwynd {

namespace {

bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

/// The host of an authority, without user and port.
std::string_view hostOf(std::string_view authority) {
    authority.remove_prefix(authority.rfind('@') + 1);
    const std::size_t colon = authority.rfind(':');
    const bool port = colon != std::string_view::npos &&
        std::ranges::all_of(authority.substr(colon + 1), isDigit);
    return port ? authority.substr(0, colon) : authority;
}

std::optional<std::int64_t> decimal(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-'))
            return std::nullopt;
    }
    std::int64_t number = 0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && stop == end ? std::optional{number} : std::nullopt;
}

} // namespace

// Works on the text itself: QUrl would convert scheme and host to lower case.
std::optional<std::int64_t> courseOfLink(std::string_view link) {
    constexpr std::string_view scheme = "ellwynd://";
    if (!link.starts_with(scheme))
        return std::nullopt;
    link.remove_prefix(scheme.size());
    link = link.substr(0, link.find_first_of("?#"));
    const std::size_t slash = link.find('/');
    if (slash == std::string_view::npos || hostOf(link.substr(0, slash)) != "course")
        return std::nullopt;
    const std::string_view path = link.substr(slash + 1);
    return decimal(path.substr(0, path.find('/')));
}

bool looksLikeLink(std::string_view word) {
    const std::size_t colon = word.find(':');
    return colon != std::string_view::npos && colon > 0 && isLetter(word.front()) &&
        std::ranges::all_of(word.substr(0, colon), [](char c) {
               return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.';
           });
}

} // namespace ellwynd
