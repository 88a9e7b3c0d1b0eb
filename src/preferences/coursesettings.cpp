#include "preferences/coursesettings.h"

namespace ellwynd {

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

} // namespace ellwynd
