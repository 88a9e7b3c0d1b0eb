// Deletions of recorded data that can be undone.
//
// The files are deleted at once, and the undo stack holds their contents in memory: when the
// program ends, they stay deleted.
#pragma once

#include "app/undo/undostack.h"
#include "memory/contactlog.h"
#include "memory/rosterhistory.h"

namespace ellwynd {

// The stores and the preferences must outlive the stack.

void deleteHistory(RosterHistory &history, UndoStack &undo);
void deleteContacts(ContactLog &contacts, UndoStack &undo);

/// Saves "RememberRosterHistory". Switching it off deletes the history; undoing that switches it on
/// again and restores the history.
void setRemembersLevels(UserDefaults &defaults, RosterHistory &history, UndoStack &undo, bool on);
/// The same of "RememberContacts" and the contacts.
void setRemembersContacts(UserDefaults &defaults, ContactLog &contacts, UndoStack &undo, bool on);

} // namespace ellwynd
