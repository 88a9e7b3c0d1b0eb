#include "canvas/connectioncheck.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "outputs/snapshot/snapshotfiles.h"
#include "platform/folders/directories.h"
#include "platform/session/widgettimelines.h"

namespace ellwynd::cli {

static int runDisconnect(Session &session, const QStringList &words) {
    CommandLine line(session, "disconnect", "Delete the token and forget the Canvas address.");
    if (!line.parse(words))
        return done;
    refuseSample(session, "disconnect");
    ConnectionCheck(session.defaults(), session.secrets(), session.http()).signOut();
    WidgetSnapshotWriter(directories::widgetContainer(), widgetTimelines::reloadAll).clear();
    return done;
}

Command disconnectCommand() {
    return {"disconnect", "sign out of Canvas", runDisconnect};
}

} // namespace ellwynd::cli
