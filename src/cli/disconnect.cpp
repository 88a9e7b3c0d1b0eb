#include "canvas/connectioncheck.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "outputs/snapshot/snapshotfiles.h"
#include "platform/folders/directories.h"
#include "platform/session/widgettimelines.h"

namespace ellwynd::cli {

static int runDisconnect(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "disconnect", "Delete the token and forget the Canvas address.");
    if (!line.parse(words))
        return done;
    refuseSample(context, "disconnect");
    ConnectionCheck(context.defaults(), context.secrets(), context.http()).signOut();
    WidgetSnapshotWriter(directories::widgetContainer(), widgetTimelines::reloadAll).clear();
    return done;
}

Command disconnectCommand() {
    return {"disconnect", "sign out of Canvas", runDisconnect};
}

} // namespace ellwynd::cli
