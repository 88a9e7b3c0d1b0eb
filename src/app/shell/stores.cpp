#include "app/shell/stores.h"

#include "app/shell/samplehistory.h"
#include "base/files.h"

namespace ellwynd {

namespace {

std::optional<std::filesystem::path>
memoryDirectory(const UserDefaults &defaults, const std::filesystem::path &directory) {
    return defaults.value(preferences::sampleData) ? std::nullopt : std::optional{directory};
}

/// Whether a store has left a file, or copies of it that were set aside.
bool hasFiles(const std::filesystem::path &file) {
    return files::stamp(file).size != files::Stamp::absent || files::hasSetAside(file);
}

} // namespace

Stores::Stores(
    UserDefaults &defaults, const std::filesystem::path &directory, Clock clock,
    StartWork startWork)
    : history(defaults, memoryDirectory(defaults, directory), clock, std::move(startWork)),
      contacts(defaults, memoryDirectory(defaults, directory), clock),
      templates(directory, clock) {
    if (!defaults.value(preferences::sampleData)) {
        // A store may have been switched off while its file was not in use, such as in sample mode.
        if (!history.isEnabled() && hasFiles(directory / "RosterHistory.json"))
            history.deleteAll();
        if (!contacts.isEnabled() && hasFiles(directory / "ContactLog.json"))
            contacts.deleteAll();
        return;
    }
    if (history.isEnabled())
        history.fill(sampleHistory(clock()));
    if (contacts.isEnabled())
        contacts.fill(sampleContacts(clock()));
}

} // namespace ellwynd
