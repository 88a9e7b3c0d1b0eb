#include "app/shell/unsavedchanges.h"

#include "base/text.h"

#include <fmt/format.h>

namespace ellwynd {

std::optional<std::string> unsavedNote(const Stores &stores, const UserDefaults &defaults) {
    std::vector<std::string> unsaved;
    if (!stores.history.isSaved())
        unsaved.emplace_back("the history");
    if (!stores.contacts.isSaved())
        unsaved.emplace_back("the contacts");
    if (!stores.templates.isSaved())
        unsaved.emplace_back("the templates");
    if (!defaults.isSaved())
        unsaved.emplace_back("the settings");
    if (unsaved.empty())
        return std::nullopt;
    std::string last = std::move(unsaved.back());
    unsaved.pop_back();
    if (!unsaved.empty())
        last = join(unsaved, ", ") + " and " + last;
    return fmt::format("Couldn’t save {}. Ellwynd will try again.", last);
}

UnsavedChanges::UnsavedChanges(Stores &stores, UserDefaults &defaults)
    : stores(stores),
      defaults(defaults),
      observing(defaults.observe([this](std::string_view) { check(); })) {
    using Self = UnsavedChanges;
    connect(&stores.history, &RosterHistory::historyDidChange, this, &Self::check);
    connect(&stores.contacts, &ContactLog::contactsDidChange, this, &Self::check);
    connect(&stores.templates, &TemplateStore::templatesDidChange, this, &Self::check);
    check();
}

std::string UnsavedChanges::addedTo(const std::string &status) const {
    return current ? status + "\n" + *current : status;
}

void UnsavedChanges::saveAgain() {
    stores.history.saveUnsaved();
    stores.contacts.saveUnsaved();
    stores.templates.saveUnsaved();
}

void UnsavedChanges::check() {
    auto note = unsavedNote(stores, defaults);
    if (note == current)
        return;
    current = std::move(note);
    Q_EMIT noteDidChange();
}

} // namespace ellwynd
