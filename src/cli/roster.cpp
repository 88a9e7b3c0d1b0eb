#include "canvas/runtoend.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"

#include <nlohmann/json.hpp>

namespace ellwynd::cli {

int runRoster(Session &session, const QStringList &words) {
    CommandLine line(session, "roster", "Fetch and score one course, worst first.");
    line.argument("COURSE", "The course's id.");
    if (!line.parse(words))
        return done;
    const std::int64_t id = parseID(line.word(0), "course");
    const auto source = session.connect();
    const Course course = findCourse(fetchCourses(*source), id);
    const ScoredCourse scored =
        runToEnd(loadCourse(*source, course, session.defaults(), session.now));
    line.print(
        line.wantsJSON() ? printed(rosterDocument(scored)) : rosterText(scored, session.now()));
    return done;
}

} // namespace ellwynd::cli
