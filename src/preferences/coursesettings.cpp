#include "preferences/coursesettings.h"

#include <algorithm>

namespace ellwynd {

namespace {

template<class Words>
std::string
known(const UserDefaults &defaults, std::int64_t courseID, std::string_view suffix, Words words) {
    const auto stored = defaults.object(courseSettings::key(courseID, suffix));
    auto word = stored ? valueAs<std::string>(*stored) : std::nullopt;
    const bool isKnown = word && std::ranges::find(words, *word) != words.end();
    return isKnown ? *std::move(word) : std::string();
}

} // namespace

std::string courseSettings::key(std::int64_t courseID, std::string_view suffix) {
    return std::string(prefix) + std::to_string(courseID) + "." + std::string(suffix);
}

std::string_view courseSettings::suffixOf(std::string_view key) {
    return key.starts_with(prefix) ? key.substr(key.rfind('.') + 1) : std::string_view();
}

bool courseSettings::has(
    const UserDefaults &defaults, std::int64_t courseID, std::string_view suffix) {
    return defaults.object(key(courseID, suffix)).has_value();
}

void courseSettings::set(
    UserDefaults &defaults, std::int64_t courseID, std::string_view suffix,
    std::optional<PreferenceValue> value) {
    defaults.update({{key(courseID, suffix), std::move(value)}});
}

bool courseSettings::isIconKey(std::string_view key) {
    const std::string_view suffix = suffixOf(key);
    return suffix == icon || suffix == iconColor;
}

CourseIcon courseIcon(const UserDefaults &defaults, std::int64_t courseID) {
    using namespace courseSettings;
    return {
        .icon = known(defaults, courseID, icon, iconWords),
        .color = known(defaults, courseID, iconColor, colorWords)};
}

} // namespace ellwynd
