#include "app/stores.h"

#include "app/samplepast.h"

namespace ellwynd {

namespace {

std::optional<std::filesystem::path>
memoryDirectory(const UserDefaults &defaults, const std::filesystem::path &directory) {
    return defaults.value(preferences::sampleData) ? std::nullopt : std::optional{directory};
}

} // namespace

Stores::Stores(UserDefaults &defaults, const std::filesystem::path &directory, Clock clock)
    : history(defaults, memoryDirectory(defaults, directory), clock),
      contacts(defaults, memoryDirectory(defaults, directory), clock),
      templates(directory, clock) {
    if (!defaults.value(preferences::sampleData))
        return;
    if (history.isEnabled())
        history.fill(samplePast(clock()));
    if (contacts.isEnabled())
        contacts.fill(sampleContacts(clock()));
}

} // namespace ellwynd
