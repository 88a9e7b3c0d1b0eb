#include "canvas/connectioncheck.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/terminaltext.h"
#include "outputs/snapshot/snapshotfiles.h"
#include "platform/folders/directories.h"
#include "platform/session/widgettimelines.h"

namespace ellwynd::cli {

static int runDisconnect(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "disconnect", "Delete the token and forget the Canvas address.");
    if (!line.parse(words))
        return done;
    refuseSample(context, "disconnect");
    ConnectionCheck check(context.defaults(), context.tokens(), context.http());
    const ConnectionOutcome outcome = context.finish("Deleting the token…", check.signOut());
    WidgetSnapshotWriter(directories::widgetContainer(), widgetTimelines::reloadAll).clear();
    if (outcome.succeeded) {
        requireSaved(context);
        return done;
    }
    context.err << terminalText(outcome.status + " " + outcome.advice) << "\n";
    return keychainUnavailable;
}

Command disconnectCommand() {
    return {"disconnect", "sign out of Canvas", runDisconnect};
}

} // namespace ellwynd::cli
