#include "preferences/courseicon.h"

#include "preferences/coursesettings.h"

#include <algorithm>
#include <span>

namespace ellwynd {

namespace {

/// The word stored for the course; empty unless it is one of `words`.
std::string chosen(
    const UserDefaults &defaults, std::int64_t courseID, std::string_view suffix,
    std::span<const std::string_view> words) {
    const auto stored = defaults.object(courseSettings::key(courseID, suffix));
    auto word = stored ? valueAs<std::string>(*stored) : std::nullopt;
    const bool isKnown = word && std::ranges::find(words, *word) != words.end();
    return isKnown ? *std::move(word) : std::string();
}

} // namespace

bool courseSettings::isIconKey(std::string_view key) {
    const std::string_view suffix = suffixOf(key);
    return suffix == icon || suffix == iconColor;
}

CourseIcon courseIcon(const UserDefaults &defaults, std::int64_t courseID) {
    using namespace courseSettings;
    return {
        .icon = chosen(defaults, courseID, icon, iconWords),
        .color = chosen(defaults, courseID, iconColor, colorWords)};
}

} // namespace ellwynd
