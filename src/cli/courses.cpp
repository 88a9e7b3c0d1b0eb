#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"
#include "cli/table.h"

#include <nlohmann/json.hpp>

namespace ellwynd::cli {

namespace {

JSON courseDocument(const Course &course) {
    JSON term = nullptr;
    if (course.term) {
        const auto instant = [](const std::optional<Date> &date) {
            return date ? JSON(formatInstant(*date)) : JSON(nullptr);
        };
        term = {
            {"id", course.term->id},
            {"name", displayName(*course.term)},
            {"startAt", instant(course.term->startAt)},
            {"endAt", instant(course.term->endAt)}};
    }
    return {
        {"id", course.id},
        {"name", displayName(course)},
        {"courseCode", course.courseCode ? JSON(*course.courseCode) : JSON(nullptr)},
        {"term", std::move(term)}};
}

} // namespace

static int runCourses(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "courses", "List your active courses.");
    // The ids are always printed; the flag is that of the other lists.
    line.flag("ids", "Print the id of every course, as without this option.");
    if (!line.parse(words))
        return done;
    const auto source = context.connect();
    const std::vector<Course> courses = fetchCourses(context, *source);
    if (line.wantsJSON()) {
        JSON list = JSON::array();
        for (const Course &course : courses)
            list.push_back(courseDocument(course));
        line.print(printed(list));
        return done;
    }
    Table table({{"Course", true}, {"Term", true}, {"Term name"}, {"Name"}});
    for (const Course &course : courses) {
        table.add(
            {std::to_string(course.id), course.term ? std::to_string(course.term->id) : "",
             course.term ? displayName(*course.term) : "", displayName(course)});
    }
    line.print(table.text(line.columns()));
    return done;
}

Command coursesCommand() {
    return {"courses", "list your active courses", runCourses};
}

} // namespace ellwynd::cli
