#include "app/undo/undotexts.h"

#include "base/text.h"

#include <fmt/format.h>

namespace ellwynd::undotexts {

namespace {

/// A name on one line, and not longer than a menu allows.
std::string shortName(std::string_view name) {
    constexpr std::size_t maxLength = 40;
    return shortened(name, maxLength);
}

std::string count(const std::vector<std::string> &students, std::string_view noun) {
    return plural(std::int64_t(students.size()), noun);
}

/// "Ada, Grace and 3 others" of five students.
std::string namesOf(const std::vector<std::string> &students) {
    constexpr std::size_t maxNames = 3;
    std::vector<std::string> names;
    for (const std::string &student : students) {
        if (students.size() > maxNames && names.size() + 1 == maxNames)
            break;
        names.push_back(shortName(student));
    }
    if (students.size() > names.size())
        names.push_back(fmt::format("{} others", students.size() - names.size()));
    if (names.size() < 2)
        return join(names, "");
    const std::string last = std::move(names.back());
    names.pop_back();
    return join(names, ", ") + " and " + last;
}

std::string_view nameOf(History history) {
    return history == History::levels ? "levels" : "contacts";
}

std::string_view titleOf(History history) {
    return history == History::levels ? "Levels" : "Contacts";
}

} // namespace

UndoTexts markedContacted(const std::vector<std::string> &students) {
    const std::string whom =
        students.size() == 1 ? shortName(students.front()) : count(students, "Student");
    return {
        .name = fmt::format("Mark {} as Contacted", whom),
        .note = fmt::format("Marked {} as contacted.", namesOf(students))};
}

UndoTexts removedMarks(const std::vector<std::string> &students) {
    if (students.size() == 1) {
        const std::string whom = shortName(students.front());
        return {
            .name = fmt::format("Remove Contact Mark of {}", whom),
            .note = fmt::format("Removed the contact mark of {}.", whom)};
    }
    return {
        .name = fmt::format("Remove Contact Marks of {}", count(students, "Student")),
        .note = fmt::format("Removed the contact marks of {}.", namesOf(students))};
}

UndoTexts changedDefaultPassingScore() {
    return {.name = "Change Default Passing Score", .note = "Changed the default passing score."};
}

UndoTexts changedDefaultInactivity() {
    return {
        .name = "Change Default Inactivity Window",
        .note = "Changed the default inactivity window."};
}

UndoTexts changedThresholds(std::string_view course) {
    const std::string name = shortName(course);
    return {
        .name = fmt::format("Change Thresholds of {}", name),
        .note = fmt::format("Changed the thresholds of {}.", name)};
}

UndoTexts changedIcon(std::string_view course) {
    const std::string name = shortName(course);
    return {
        .name = fmt::format("Change Icon of {}", name),
        .note = fmt::format("Changed the icon of {}.", name)};
}

UndoTexts copiedSetup(std::string_view from) {
    const std::string name = shortName(from);
    return {
        .name = fmt::format("Copy Setup of {}", name),
        .note = fmt::format("Copied the setup of {}.", name)};
}

UndoTexts deletedTemplate(std::string_view name) {
    const std::string quoted = fmt::format("“{}”", shortName(name));
    return {.name = "Delete " + quoted, .note = fmt::format("Deleted {}.", quoted)};
}

UndoTexts restoredTemplates() {
    return {.name = "Restore Default Templates", .note = "Restored the default templates."};
}

UndoTexts deletedHistory(History history) {
    return {
        .name = fmt::format("Delete History of {}", titleOf(history)),
        .note = fmt::format("Deleted the history of {}.", nameOf(history))};
}

UndoTexts switchedOff(History history) {
    return {
        .name = fmt::format("Stop Remembering {}", titleOf(history)),
        .note = fmt::format(
            "Deleted the history of {0}, and stopped remembering {0}.", nameOf(history))};
}

std::string ended(std::string_view name, UndoResult result) {
    switch (result) {
    case UndoResult::all:
        break;
    case UndoResult::some:
        return fmt::format("Undone in part: {}. The rest has changed since.", name);
    case UndoResult::none:
        return fmt::format("Not undone: {}. It has changed since.", name);
    }
    return fmt::format("Undone: {}.", name);
}

} // namespace ellwynd::undotexts
