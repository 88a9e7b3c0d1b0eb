#include "app/sync/settingsmerge.h"

#include "preferences/preferencekeys.h"

namespace ellwynd {

namespace {

using Value = std::optional<PreferenceValue>;

Value valueOf(const PreferenceMap &map, const std::string &key) {
    const auto found = map.find(key);
    return found != map.end() ? Value(found->second) : std::nullopt;
}

bool isBlank(const Value &value) {
    const auto *text = value ? std::get_if<std::string>(&*value) : nullptr;
    return !value || (text != nullptr && text->empty());
}

/// The store's value as this program stores it; absent also for a value of the wrong type.
Value storedValue(const CloudContents &stored, const std::string &key) {
    const Value value = valueOf(stored.values, key);
    return value ? preferences::converted(key, *value) : std::nullopt;
}

void assign(PreferenceMap &map, const std::string &key, const Value &value) {
    if (value)
        map.insert_or_assign(key, *value);
    else
        map.erase(key);
}

std::set<std::string> syncedKeys(
    const PreferenceMap &local, const std::optional<PreferenceMap> &agreed,
    const CloudContents &stored) {
    std::set<std::string> keys(stored.unreadable.begin(), stored.unreadable.end());
    for (const PreferenceMap *map : {&local, agreed ? &*agreed : nullptr, &stored.values}) {
        if (map == nullptr)
            continue;
        for (const auto &[key, value] : *map)
            keys.insert(key);
    }
    std::erase_if(keys, [](const std::string &key) { return !preferences::isSynced(key); });
    return keys;
}

} // namespace

SettingsMerge mergeSettings(
    const PreferenceMap &local, const std::optional<PreferenceMap> &agreed,
    const CloudContents &stored, const std::set<std::string, std::less<>> &changedHere) {
    SettingsMerge merge;
    if (agreed)
        merge.agreed = *agreed;
    for (const std::string &key : syncedKeys(local, agreed, stored)) {
        const Value here = valueOf(local, key);
        const Value there = storedValue(stored, key);
        const bool isReadable =
            there || !(stored.unreadable.contains(key) || stored.values.contains(key));
        const bool isChanged = agreed ? here != valueOf(*agreed, key) : changedHere.contains(key);
        const bool isAddressAtRisk =
            key == preferences::canvasBaseURL.name && isBlank(there) && !isBlank(here);
        const bool isUnknownThere = !agreed && !there;
        const bool isSame = isReadable && here == there;
        if (!isSame && (isChanged || (isReadable && isUnknownThere))) {
            // At a first meeting what the store held is the base, so that it stays a change.
            if (!agreed)
                assign(merge.agreed, key, there);
            merge.toPush.emplace(key, here);
        } else if (isSame || !isReadable || isAddressAtRisk) {
            // What cannot be read, or is no address, is a difference to be applied once it is.
            assign(merge.agreed, key, here);
        } else {
            merge.toApply.emplace(key, there);
            assign(merge.agreed, key, there);
        }
    }
    return merge;
}

} // namespace ellwynd
