#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"
#include "cli/names.h"

#include <nlohmann/json.hpp>

namespace ellwynd::cli {

static int runRoster(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "roster", "Fetch and score one course, worst first.");
    line.argument("COURSE", "The course's id, name or code.");
    line.flag("visit", "Count as a visit: record today's levels, as opening the course does.");
    line.flag("ids", "Print the id of every student and assignment.");
    addExportFlags(line);
    if (!line.parse(words))
        return done;
    const auto format = exportFormat(line);
    const ScoredCourse course = loadCourse(context, parseReference(line.word(0), "course"));
    Stores &stores = context.stores();
    RosterMemory memory;
    memory.movement = movementOf(course, stores);
    if (line.has("visit"))
        recordVisit(course, stores, context.trends());
    memory.outreach = outreachOf(course.rows, stores, context.now());
    if (format) {
        line.print(exportText(
            *format, displayName(course.course), course.rows, exportSource(context, false)));
        return done;
    }
    line.print(
        line.wantsJSON() ? printed(rosterDocument(course, memory))
                         : rosterText(
                               course,
                               {.withIDs = line.has("ids"),
                                .now = context.now(),
                                .memory = memory,
                                .columns = line.columns()}));
    return done;
}

Command rosterCommand() {
    return {"roster", "fetch and score one course", runRoster};
}

} // namespace ellwynd::cli
