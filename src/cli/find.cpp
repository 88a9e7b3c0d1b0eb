#include "app/courses/nearbyterms.h"
#include "app/find/findcontents.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"
#include "cli/names.h"
#include "cli/table.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace ellwynd::cli {

namespace {

/// The text to find, which may be several words of the command line.
std::string typedText(const CommandLine &line) {
    std::string typed;
    for (qsizetype i = 0; i < line.wordCount(); ++i)
        typed += (i > 0 ? " " : "") + line.word(i);
    if (foldedWords(typed).empty())
        throw UsageError("find needs a letter or a digit to find");
    return typed;
}

/// All courses, and the students of those of the nearby terms.
std::vector<FindEntry>
readEntries(CommandContext &context, const std::shared_ptr<CanvasReading> &source) {
    const std::vector<Course> courses = fetchCourses(context, *source);
    std::vector<Course> nearby;
    for (const TermGroup &term : nearbyTerms(courses, context.now()))
        nearby.insert(nearby.end(), term.courses.begin(), term.courses.end());
    std::vector<FindEntry> entries;
    for (const Course &course : courses)
        entries.push_back(entryOf(course));
    for (const ScoredCourse &course : loadCourses(context, source, nearby))
        std::ranges::move(studentsOf(course), std::back_inserter(entries));
    return entries;
}

JSON foundDocument(const FindEntry &entry) {
    const bool isStudent = entry.kind == FoundKind::student;
    return {
        {"kind", isStudent ? "student" : "course"},
        {"id", *entry.id},
        {"name", entry.title},
        {"courseID", entry.courseID},
        {"courseName", isStudent ? entry.detail : entry.title},
        {"level", entry.level ? JSON(levelName(*entry.level)) : JSON(nullptr)}};
}

std::string foundText(const std::vector<FindEntry> &found, std::size_t columns) {
    Table table({{"Level"}, {"Student", true}, {"Course", true}, {"Name"}, {"In"}});
    for (const FindEntry &entry : found) {
        const bool isStudent = entry.kind == FoundKind::student;
        table.add(
            {isStudent ? std::string(levelName(entry.level)) : "",
             isStudent ? std::to_string(*entry.id) : "", std::to_string(entry.courseID),
             entry.title, entry.detail});
    }
    return table.text(columns);
}

} // namespace

static int runFind(CommandContext &context, const QStringList &words) {
    CommandLine line(
        context, "find", "Find students of the nearby terms, and courses, by name; best first.");
    line.argument("TEXT", "The beginnings of words of the name, or its initials.", true);
    if (!line.parse(words))
        return done;
    const std::string typed = typedText(line);
    const auto source = context.connect();
    const std::vector<FindEntry> found = FindIndex(readEntries(context, source)).find(typed);
    if (line.wantsJSON()) {
        JSON list = JSON::array();
        for (const FindEntry &entry : found)
            list.push_back(foundDocument(entry));
        line.print(printed(list));
        return done;
    }
    if (found.empty())
        context.err << "Nobody and nothing is named like that.\n";
    line.print(found.empty() ? "" : foundText(found, line.columns()));
    return done;
}

Command findCommand() {
    return {"find", "find students and courses by name", runFind};
}

} // namespace ellwynd::cli
