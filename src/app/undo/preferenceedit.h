// Changes of preferences that can be undone.
#pragma once

#include "app/undo/undostack.h"
#include "preferences/userdefaults.h"

#include <memory>

namespace ellwynd {

/// The preferences that one edit changed, with their values before and after it.
struct PreferenceEdit {
    /// Absent for a key that was not saved.
    PreferenceChanges before;
    /// With the keys of `before`.
    PreferenceChanges after;

    /// Adds a change that was just made.
    /// @param replaced as returned by `UserDefaults::update`.
    void add(const UserDefaults &defaults, const PreferenceChanges &replaced);
    /// Whether every value is what it was before.
    [[nodiscard]] bool isEmpty() const { return before.empty(); }
};

/// Restores the values of an edit in one write. A preference that has changed since, such as in
/// another window or by sync, is left as it is.
UndoResult undoEdit(UserDefaults &defaults, const PreferenceEdit &edit);

/// Adds an edit to the stack, unless it changed nothing.
/// @param defaults must outlive the stack.
void pushEdit(UndoStack &undo, UserDefaults &defaults, PreferenceEdit edit, UndoTexts texts);

/// Saves the changes of an editor. Consecutive changes, such as by a key that is held down, are one
/// step of the stack.
class PreferenceEditor {
  public:
    /// The arguments must outlive the stack.
    PreferenceEditor(UserDefaults &defaults, UndoStack &undo, UndoTexts texts);

    void save(std::string_view key, PreferenceValue value);
    /// The teacher has left the editor: the next change is a step of its own.
    void finish() { edit.reset(); }

  private:
    UserDefaults &defaults;
    UndoStack &undo;
    UndoTexts texts;
    /// Of the step that further changes extend; null for none.
    std::shared_ptr<PreferenceEdit> edit;
    UndoStack::ID step = 0;
};

} // namespace ellwynd
