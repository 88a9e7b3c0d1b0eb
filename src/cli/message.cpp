#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"
#include "cli/names.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>

namespace ellwynd::cli {

namespace {

/// The template named with `--template`. @throws UsageError
const MessageTemplate &chosenTemplate(CommandContext &context, const CommandLine &line) {
    const auto name = line.value("template");
    if (!name)
        throw UsageError("message needs --template NAME");
    const std::vector<MessageTemplate> &templates = context.stores().templates.templates();
    const auto found = std::ranges::find(templates, *name, &MessageTemplate::name);
    if (found == templates.end())
        throw UsageError(fmt::format("There is no template {}", *name));
    return *found;
}

/// The named students' rows in the order of the roster, or every flagged one's when none is named.
/// @throws Failure for a student who is not on the roster, AmbiguousName
std::vector<RiskRow>
chosenRows(const ScoredCourse &course, const std::vector<Reference> &students) {
    std::set<std::int64_t> named;
    for (const Reference &student : students)
        named.insert(findStudent(course, student).id);
    std::vector<RiskRow> rows;
    std::ranges::copy_if(course.rows, std::back_inserter(rows), [&named](const RiskRow &row) {
        return named.empty() ? row.level.has_value() : named.contains(row.id);
    });
    return rows;
}

} // namespace

static int runMessage(CommandContext &context, const QStringList &words) {
    CommandLine line(
        context, "message", "Print the message that would be copied for each student.");
    line.argument("COURSE", "The course's id, name or code.");
    line.option("template", "NAME", "The template to fill.");
    line.option(
        "student", "STUDENT",
        "A student's id or name; may be repeated. Default: every flagged student.");
    line.flag("note", "Record a contact for each of these students.");
    if (!line.parse(words))
        return done;
    const Reference course = parseReference(line.word(0), "course");
    std::vector<Reference> students;
    for (const std::string &word : line.values("student"))
        students.push_back(parseReference(word, "student"));
    const MessageTemplate message = chosenTemplate(context, line);

    const ScoredCourse scored = loadCourse(context, course);
    const std::vector<RiskRow> rows = chosenRows(scored, students);
    const std::string text =
        fillAll(message, rows, displayName(scored.course), [&scored](std::int64_t) {
            return scored.thresholds.passingScore;
        });
    if (line.wantsJSON())
        line.print(printed(JSON(text)));
    else
        line.print(rows.empty() ? "" : text + "\n");
    if (line.has("note")) {
        std::vector<std::int64_t> ids;
        for (const RiskRow &row : rows)
            ids.push_back(row.id);
        context.stores().contacts.noteContacts(scored.course.id, ids, context.now());
        requireSaved(context);
    }
    return done;
}

Command messageCommand() {
    return {"message", "print a filled message for each student", runMessage};
}

} // namespace ellwynd::cli
