#include "cli/names.h"

#include "app/find/findcontents.h"
#include "base/text.h"
#include "cli/terminaltext.h"
#include "preferences/launcharguments.h"

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd::cli {

namespace {

/// What tells courses of the same name apart.
std::string termOf(const FindEntry &entry) {
    const bool known = entry.kind == FoundKind::course && !entry.detail.empty();
    return known ? fmt::format(" ({})", terminalText(entry.detail)) : "";
}

/// The only entry of that name.
/// @param what "course" or "student".
std::int64_t onlyOne(
    std::vector<FindEntry> entries, const Reference &reference, const char *what,
    const char *where) {
    const std::vector<FindEntry> found = FindIndex(std::move(entries)).named(reference.word);
    if (found.empty())
        throw Failure(fmt::format("No {} named {} in the {}.", what, reference.word, where));
    if (found.size() > 1) {
        std::vector<std::string> lines;
        for (const FindEntry &entry : found)
            lines.push_back(fmt::format(
                "{} {}: {}{}", what, *entry.id, terminalText(entry.title), termOf(entry)));
        throw AmbiguousName(lines);
    }
    return *found.front().id;
}

} // namespace

AmbiguousName::AmbiguousName(const std::vector<std::string> &lines)
    : UsageError(join(lines, "\n")) {}

Reference parseReference(const std::string &word, const char *what) {
    const PreferenceValue value = parsePreferenceValue(word);
    if (const auto *id = std::get_if<std::int64_t>(&value))
        return {.id = *id, .word = word};
    if (foldedWords(word).empty())
        throw UsageError(fmt::format("“{}” is neither the id nor the name of a {}", word, what));
    return {.id = std::nullopt, .word = word};
}

Course findCourse(const std::vector<Course> &courses, const Reference &reference) {
    std::int64_t id = 0;
    if (reference.id) {
        id = *reference.id;
    } else {
        std::vector<FindEntry> entries;
        for (const Course &course : courses)
            entries.push_back(entryOf(course));
        id = onlyOne(std::move(entries), reference, "course", "course list");
    }
    const auto found = std::ranges::find(courses, id, &Course::id);
    if (found == courses.end())
        throw Failure(fmt::format("No course {} in the course list.", id));
    return *found;
}

ScoredCourse loadCourse(CommandContext &context, const Reference &reference) {
    const auto source = context.connect();
    const Course course = findCourse(fetchCourses(context, *source), reference);
    ScoredCourse scored = context.finish(
        "Reading the roster…",
        ellwynd::loadCourse(source, course, context.defaults(), context.now));
    const ScoredCourse *only = &scored;
    printNotes(context, {&only, 1});
    return scored;
}

std::vector<ScoredCourse> loadCourses(
    CommandContext &context, const std::shared_ptr<CanvasReading> &source,
    const std::vector<Course> &courses) {
    std::vector<QCoro::Task<ScoredCourse>> loads;
    for (const Course &course : courses)
        loads.push_back(ellwynd::loadCourse(source, course, context.defaults(), context.now));
    std::vector<ScoredCourse> scored;
    for (auto &load : loads) {
        scored.push_back(context.finish(
            fmt::format(
                "Reading {} of {}: {}…", scored.size() + 1, loads.size(),
                displayName(courses[scored.size()])),
            std::move(load)));
    }
    std::vector<const ScoredCourse *> read;
    for (const ScoredCourse &course : scored)
        read.push_back(&course);
    printNotes(context, read);
    return scored;
}

const RiskRow &findStudent(const ScoredCourse &course, const Reference &reference) {
    const std::int64_t id =
        reference.id ? *reference.id : onlyOne(studentsOf(course), reference, "student", "roster");
    const auto found = std::ranges::find(course.rows, id, &RiskRow::id);
    if (found == course.rows.end())
        throw Failure(fmt::format("No student {} in the roster.", id));
    return *found;
}

} // namespace ellwynd::cli
