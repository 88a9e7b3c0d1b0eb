#include "app/roster/rostertexts.h"
#include "app/roster/termroster.h"
#include "canvas/records/termgroups.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"
#include "cli/names.h"
#include "cli/terminaltext.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace ellwynd::cli {

static int runTerm(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "term", "Score every course of one term; flagged students only.");
    line.argument("TERM", "The term's id.");
    line.flag("ids", "Print the id of every student.");
    addExportFlags(line);
    if (!line.parse(words))
        return done;
    const auto format = exportFormat(line);
    const std::int64_t id = parseID(line.word(0), "term");
    const auto source = context.connect();
    const std::vector<TermGroup> terms = groupByTerm(fetchCourses(context, *source));
    const auto term = std::ranges::find(terms, std::optional{id}, &TermGroup::id);
    if (term == terms.end())
        throw Failure(fmt::format("No term {} in the course list.", id));

    const std::vector<ScoredCourse> scored = loadCourses(context, source, term->courses);
    std::vector<const ScoredCourse *> courses;
    for (const ScoredCourse &course : scored)
        courses.push_back(&course);
    const SharedList<RiskRow> rows = termRows(courses);

    if (format) {
        line.print(exportText(*format, title(*term), rows, exportSource(context, true)));
        return done;
    }
    const RosterMemory memory{.outreach = outreachOf(rows, context.stores(), context.now())};
    if (line.wantsJSON()) {
        JSON list = JSON::array();
        for (const RiskRow &row : rows)
            list.push_back(rowDocument(row, memory.outcomeOf(row)));
        line.print(printed(list));
        return done;
    }
    std::string text = fmt::format(
        "{}\n{}\n\n", terminalText(title(*term)), flaggedAcrossText(rows.size(), scored.size()));
    line.print(
        text +
        rowsTable(
            rows,
            {.withCourse = true,
             .withIDs = line.has("ids"),
             .now = context.now(),
             .memory = memory,
             .columns = line.columns()}));
    return done;
}

Command termCommand() {
    return {"term", "list the flagged students of a whole term", runTerm};
}

} // namespace ellwynd::cli
