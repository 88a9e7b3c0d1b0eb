// Regular expressions in tests.
#pragma once

#include <regex>
#include <string>
#include <vector>

namespace ellwynd::test {

/// All matches of a pattern's first group, in order. "^" and "$" match at every line.
inline std::vector<std::string> matches(const std::string &text, const std::string &pattern) {
    const std::regex regex(pattern, std::regex::multiline);
    std::vector<std::string> found;
    for (std::sregex_iterator at(text.begin(), text.end(), regex), end; at != end; ++at)
        found.push_back((*at)[1]);
    return found;
}

} // namespace ellwynd::test
