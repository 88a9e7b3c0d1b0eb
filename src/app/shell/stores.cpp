#include "app/shell/stores.h"

#include "app/shell/samplehistory.h"

namespace ellwynd {

namespace {

std::optional<std::filesystem::path>
memoryDirectory(const UserDefaults &defaults, const std::filesystem::path &directory) {
    return defaults.value(preferences::sampleData) ? std::nullopt : std::optional{directory};
}

bool isThere(const std::filesystem::path &file) {
    std::error_code error;
    return std::filesystem::exists(file, error);
}

/// Whether the saved preference, not a launch argument, switches a store off.
bool isOff(const UserDefaults &defaults, const PreferenceKey<bool> &key) {
    const PreferenceMap saved = defaults.persistentDomain();
    const auto value = saved.find(key.name);
    return value != saved.end() && value->second == PreferenceValue(false);
}

} // namespace

Stores::Stores(UserDefaults &defaults, const std::filesystem::path &directory, Clock clock)
    : history(defaults, memoryDirectory(defaults, directory), clock),
      contacts(defaults, memoryDirectory(defaults, directory), clock),
      templates(directory, clock) {
    if (!defaults.value(preferences::sampleData)) {
        // A store may have been switched off while its file was not in use, such as in sample mode.
        if (isOff(defaults, preferences::rememberRosterHistory) &&
            isThere(directory / "RosterHistory.json"))
            history.deleteAll();
        if (isOff(defaults, preferences::rememberContacts) &&
            isThere(directory / "ContactLog.json"))
            contacts.deleteAll();
        return;
    }
    if (history.isEnabled())
        history.fill(sampleHistory(clock()));
    if (contacts.isEnabled())
        contacts.fill(sampleContacts(clock()));
}

} // namespace ellwynd
