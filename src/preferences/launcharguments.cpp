#include "preferences/launcharguments.h"

#include <algorithm>

namespace ellwynd {

namespace {

bool isKey(std::string_view word) {
    if (word.size() < 2 || word[0] != '-')
        return false;
    const char first = word[1];
    return (first >= 'A' && first <= 'Z') || (first >= 'a' && first <= 'z');
}

} // namespace

LaunchArguments parseLaunchArguments(std::span<const std::string> words) {
    LaunchArguments result;
    std::size_t next = 0;
    // A one-letter word is an option ("-o"), not a preference.
    while (next + 1 < words.size() && isKey(words[next]) && words[next].size() > 2) {
        result.domain.insert_or_assign(
            words[next].substr(1), parsePreferenceValue(words[next + 1]));
        next += 2;
    }
    result.rest.assign(words.begin() + std::ptrdiff_t(next), words.end());
    return result;
}

std::optional<std::string> answerWithoutWindow(
    const LaunchArguments &arguments, std::string_view usage, std::string_view nameAndVersion) {
    const auto has = [&](std::string_view word) {
        return std::ranges::find(arguments.rest, word) != arguments.rest.end();
    };
    if (has("--help") || has("-h"))
        return std::string(usage);
    if (has("--version"))
        return std::string(nameAndVersion) + "\n";
    return std::nullopt;
}

} // namespace ellwynd
