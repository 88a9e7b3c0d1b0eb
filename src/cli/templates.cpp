#include "base/text.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"
#include "cli/table.h"

#include <nlohmann/json.hpp>

namespace ellwynd::cli {

static int runTemplates(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "templates", "List the message templates.");
    line.flag("names", "Print only the names, one per line.");
    if (!line.parse(words))
        return done;
    const std::vector<MessageTemplate> &templates = context.stores().templates.templates();
    if (line.wantsJSON()) {
        JSON list = JSON::array();
        for (const MessageTemplate &each : templates)
            list.push_back({{"id", each.id}, {"name", each.name}, {"body", each.body}});
        line.print(printed(list));
        return done;
    }
    if (line.has("names")) {
        std::string names;
        for (const MessageTemplate &each : templates)
            names += oneLine(each.name) + "\n";
        line.print(names);
        return done;
    }
    Table table({{"Template"}, {"First line"}});
    for (const MessageTemplate &each : templates)
        table.add({each.name, each.body.substr(0, each.body.find('\n'))});
    line.print(table.text(line.columns()));
    return done;
}

Command templatesCommand() {
    return {"templates", "list the message templates", runTemplates};
}

} // namespace ellwynd::cli
