#include "app/undo/preferenceedit.h"

namespace ellwynd {

namespace {

std::optional<PreferenceValue> savedValue(const PreferenceMap &saved, const std::string &key) {
    const auto found = saved.find(key);
    return found != saved.end() ? std::optional{found->second} : std::nullopt;
}

} // namespace

void PreferenceEdit::add(const UserDefaults &defaults, const PreferenceChanges &replaced) {
    const PreferenceMap saved = defaults.persistentDomain();
    for (const auto &[key, value] : replaced) {
        const auto known = after.find(key);
        // A value that someone else saved meanwhile is the one to restore.
        if (known == after.end() || known->second != value)
            before[key] = value;
        after[key] = savedValue(saved, key);
        if (before[key] == after[key]) {
            before.erase(key);
            after.erase(key);
        }
    }
}

UndoResult undoEdit(UserDefaults &defaults, const PreferenceEdit &edit) {
    defaults.reloadIfChanged();
    const PreferenceMap saved = defaults.persistentDomain();
    PreferenceChanges restored;
    for (const auto &[key, value] : edit.after) {
        if (savedValue(saved, key) == value)
            restored.insert(*edit.before.find(key));
    }
    if (!restored.empty())
        defaults.update(restored);
    return undoResult(edit.after.size() - restored.size(), edit.after.size());
}

void pushEdit(UndoStack &undo, UserDefaults &defaults, PreferenceEdit edit, UndoTexts texts) {
    if (edit.isEmpty())
        return;
    undo.push({.texts = std::move(texts), .undo = [&defaults, edit = std::move(edit)] {
                   return undoEdit(defaults, edit);
               }});
}

PreferenceEditor::PreferenceEditor(UserDefaults &defaults, UndoStack &undo, UndoTexts texts)
    : defaults(defaults), undo(undo), texts(std::move(texts)) {}

void PreferenceEditor::save(std::string_view key, PreferenceValue value) {
    const PreferenceChanges replaced = defaults.update({{std::string(key), std::move(value)}});
    if (replaced.empty())
        return;
    const bool extends = edit && undo.newestID() == step;
    if (!extends)
        edit = std::make_shared<PreferenceEdit>();
    edit->add(defaults, replaced);
    if (extends && edit->isEmpty()) {
        edit.reset();
        undo.dropNewest();
    } else if (extends) {
        undo.extendNewest();
    } else {
        step = undo.push({.texts = texts, .undo = [&defaults = defaults, edit = edit] {
                              return undoEdit(defaults, *edit);
                          }});
    }
}

} // namespace ellwynd
