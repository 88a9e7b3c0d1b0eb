#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"
#include "cli/names.h"
#include "cli/terminaltext.h"
#include "memory/outreach.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <functional>

namespace ellwynd::cli {

static int runContacted(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "contacted", "Record that you wrote to these students just now.");
    line.argument("COURSE", "The course's id, name or code.");
    line.argument("STUDENT", "A student's id or name.", true);
    if (!line.parse(words))
        return done;
    const Reference wanted = parseReference(line.word(0), "course");
    std::vector<Reference> students;
    for (qsizetype i = 1; i < line.wordCount(); ++i)
        students.push_back(parseReference(line.word(i), "student"));
    const ScoredCourse course = loadCourse(context, wanted);
    std::vector<std::reference_wrapper<const RiskRow>> rows;
    std::vector<std::int64_t> ids;
    for (const Reference &student : students) {
        rows.emplace_back(findStudent(course, student));
        ids.push_back(rows.back().get().id);
    }
    Stores &stores = context.stores();
    if (!stores.contacts.isEnabled())
        throw Failure("Contact marks are turned off in Settings.");
    const Date now = context.now();
    stores.contacts.noteContacts(course.course.id, ids, now);
    requireSaved(context);

    JSON list = JSON::array();
    std::string text;
    for (const RiskRow &row : rows) {
        const auto outreach = lastOutcome(row, stores.contacts, stores.history, now);
        list.push_back(rowDocument(row, outreach));
        text += fmt::format("{}: {}.\n", terminalText(row.name), outreachText(*outreach));
    }
    line.print(line.wantsJSON() ? printed(list) : text);
    return done;
}

Command contactedCommand() {
    return {"contacted", "record that you wrote to students", runContacted};
}

} // namespace ellwynd::cli
