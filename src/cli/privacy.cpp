#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace ellwynd::cli {

static int runPrivacy(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "privacy", "Show what is remembered about students, or delete it.");
    line.optionalArgument("VERB", "forget-history or forget-contacts.");
    if (!line.parse(words))
        return done;
    Stores &stores = context.stores();
    const std::string verb = line.word(0);
    if (verb == "forget-history")
        stores.history.deleteAll();
    else if (verb == "forget-contacts")
        stores.contacts.deleteAll();
    else if (!verb.empty())
        throw UsageError(fmt::format("privacy has no verb {}", verb));

    if (!verb.empty())
        requireSaved(context);

    const std::string history = historyStatus(stores.history);
    const std::string contacts = contactsStatus(stores.contacts);
    line.print(
        line.wantsJSON() ? printed({{"history", history}, {"contacts", contacts}})
                         : fmt::format("History: {}\nContacts: {}\n", history, contacts));
    return done;
}

Command privacyCommand() {
    return {"privacy", "show what is remembered about students, or delete it", runPrivacy};
}

} // namespace ellwynd::cli
