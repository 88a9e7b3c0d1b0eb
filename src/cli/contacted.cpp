#include "base/text.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"
#include "memory/outreach.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace ellwynd::cli {

static int runContacted(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "contacted", "Record that you wrote to these students just now.");
    line.argument("COURSE", "The course's id.");
    line.argument("STUDENT", "A student's id.", true);
    if (!line.parse(words))
        return done;
    const std::int64_t courseID = parseID(line.word(0), "course");
    std::vector<std::int64_t> ids;
    for (qsizetype i = 1; i < line.wordCount(); ++i)
        ids.push_back(parseID(line.word(i), "student"));
    const ScoredCourse course = loadByID(context, courseID);
    for (const std::int64_t id : ids)
        static_cast<void>(findStudent(course, id));
    Stores &stores = context.stores();
    if (!stores.contacts.isEnabled())
        throw Failure("Contact marks are turned off in Settings.");
    const Date now = context.now();
    stores.contacts.noteContacts(courseID, ids, now);
    requireSaved(context);

    JSON list = JSON::array();
    std::string text;
    for (const std::int64_t id : ids) {
        const RiskRow &row = findStudent(course, id);
        const auto outreach = lastOutcome(row, stores.contacts, stores.history, now);
        list.push_back(rowDocument(row, outreach));
        text += fmt::format("{}: {}.\n", oneLine(row.name), outreachText(*outreach));
    }
    line.print(line.wantsJSON() ? printed(list) : text);
    return done;
}

Command contactedCommand() {
    return {"contacted", "record that you wrote to students", runContacted};
}

} // namespace ellwynd::cli
