// The texts of changes that can be undone.
#pragma once

#include "app/undo/undostack.h"

#include <vector>

namespace ellwynd::undotexts {

// Names from Canvas or of templates are put on one line, and cut at 40 characters. The names of
// students are in the order given.
[[nodiscard]] UndoTexts markedContacted(const std::vector<std::string> &students);
[[nodiscard]] UndoTexts removedMarks(const std::vector<std::string> &students);

[[nodiscard]] UndoTexts changedDefaultPassingScore();
[[nodiscard]] UndoTexts changedDefaultInactivity();
[[nodiscard]] UndoTexts changedThresholds(std::string_view course);
[[nodiscard]] UndoTexts changedIcon(std::string_view course);
/// @param from the course whose setup was copied.
[[nodiscard]] UndoTexts copiedSetup(std::string_view from);

[[nodiscard]] UndoTexts deletedTemplate(std::string_view name);
[[nodiscard]] UndoTexts restoredTemplates();

/// The history of levels, or that of contacts.
enum class History { levels, contacts };

[[nodiscard]] UndoTexts deletedHistory(History history);
/// The teacher switched it off, which also deleted it.
[[nodiscard]] UndoTexts switchedOff(History history);

/// The note after a step was undone.
/// @param name `UndoTexts::name`.
[[nodiscard]] std::string ended(std::string_view name, UndoResult result);

} // namespace ellwynd::undotexts
