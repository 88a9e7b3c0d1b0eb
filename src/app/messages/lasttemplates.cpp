#include "app/messages/lasttemplates.h"

#include "base/files.h"
#include "base/json.h"

#include <nlohmann/json.hpp>

namespace ellwynd::lastTemplates {

namespace {

/// By course id. A value that the program did not write counts as empty.
nlohmann::json saved(const UserDefaults &defaults) {
    const std::string text = defaults.value(preferences::lastTemplates);
    try {
        nlohmann::json ids = parseJSON(text);
        if (ids.is_object())
            return ids;
    } catch (const FileError &) { // NOLINT(bugprone-empty-catch)
    }
    return nlohmann::json::object();
}

} // namespace

std::string of(const UserDefaults &defaults, std::int64_t courseID) {
    const nlohmann::json ids = saved(defaults);
    return stringOf(memberOf(ids, std::to_string(courseID))).value_or("");
}

void save(
    UserDefaults &defaults, const std::set<std::int64_t> &courseIDs,
    const std::string &templateID) {
    nlohmann::json ids = saved(defaults);
    bool changed = false;
    for (const std::int64_t courseID : courseIDs) {
        nlohmann::json &id = ids[std::to_string(courseID)];
        changed = changed || id != templateID;
        id = templateID;
    }
    if (changed)
        defaults.set(preferences::lastTemplates, ids.dump());
}

} // namespace ellwynd::lastTemplates
