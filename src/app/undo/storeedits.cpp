#include "app/undo/storeedits.h"

#include "app/undo/undotexts.h"

namespace ellwynd {

namespace {

using undotexts::History;

std::function<UndoResult()> restoring(RosterHistory &history, HistoryVisits deleted) {
    return [&history, deleted = std::move(deleted)] {
        return history.restore(deleted) ? UndoResult::all : UndoResult::none;
    };
}

std::function<UndoResult()> restoring(ContactLog &contacts, ContactChange deleted) {
    return [&contacts, deleted = std::move(deleted)] {
        return undoResult(contacts.undo(deleted), deleted.entries.size());
    };
}

/// Switches a store off, which deletes its contents.
/// @param restore restores them.
void switchOff(
    UserDefaults &defaults, const PreferenceKey<bool> &key, UndoStack &undo, History contents,
    std::function<UndoResult()> restore) {
    defaults.set(key, false);
    undo.push(
        {.texts = undotexts::switchedOff(contents),
         .undo = [&defaults, &key, restore = std::move(restore)] {
             defaults.set(key, true);
             return restore();
         }});
}

} // namespace

void deleteHistory(RosterHistory &history, UndoStack &undo) {
    undo.push(
        {.texts = undotexts::deletedHistory(History::levels),
         .undo = restoring(history, history.deleteAll())});
}

void deleteContacts(ContactLog &contacts, UndoStack &undo) {
    undo.push(
        {.texts = undotexts::deletedHistory(History::contacts),
         .undo = restoring(contacts, contacts.deleteAll())});
}

void setRemembersLevels(UserDefaults &defaults, RosterHistory &history, UndoStack &undo, bool on) {
    const auto &key = preferences::rememberRosterHistory;
    if (on || history.visits().empty())
        defaults.set(key, on);
    else
        switchOff(defaults, key, undo, History::levels, restoring(history, history.visits()));
}

void setRemembersContacts(UserDefaults &defaults, ContactLog &contacts, UndoStack &undo, bool on) {
    const auto &key = preferences::rememberContacts;
    if (on || contacts.records().empty())
        defaults.set(key, on);
    else
        switchOff(
            defaults, key, undo, History::contacts,
            restoring(contacts, removalOfAll(contacts.records())));
}

} // namespace ellwynd
