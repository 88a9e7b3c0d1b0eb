#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"

#include <nlohmann/json.hpp>

namespace ellwynd::cli {

static int runRoster(Session &session, const QStringList &words) {
    CommandLine line(session, "roster", "Fetch and score one course, worst first.");
    line.argument("COURSE", "The course's id.");
    line.flag("visit", "Count as a visit: record today's levels, as opening the course does.");
    addExportFlags(line);
    if (!line.parse(words))
        return done;
    const auto format = exportFormat(line);
    const ScoredCourse course = loadByID(session, parseID(line.word(0), "course"));
    Stores &stores = session.stores();
    RosterMemory memory;
    memory.movement = movementOf(course, stores);
    if (line.has("visit"))
        recordVisit(course, stores, session.trends());
    memory.outreach = outreachOf(course.rows, stores, session.now());
    if (format) {
        line.print(exportText(
            *format, displayName(course.course), course.rows, exportSource(session, false)));
        return done;
    }
    line.print(
        line.wantsJSON() ? printed(rosterDocument(course, memory))
                         : rosterText(course, memory, session.now()));
    return done;
}

Command rosterCommand() {
    return {"roster", "fetch and score one course", runRoster};
}

} // namespace ellwynd::cli
