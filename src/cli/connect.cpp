#include "canvas/connectioncheck.h"
#include "cli/commandline.h"
#include "cli/commands.h"

#include <istream>

namespace ellwynd::cli {

static int runConnect(Session &session, const QStringList &words) {
    CommandLine line(
        session, "connect",
        "Read an access token from standard input, test the connection and save it.");
    line.argument("ADDRESS", "Your institution's Canvas address, including https://.");
    if (!line.parse(words))
        return done;
    refuseSample(session, "connect");
    std::string token;
    std::getline(session.in, token);

    ConnectionCheck check(session.defaults(), session.secrets(), session.http());
    const std::string address = line.word(0);
    const ConnectionOutcome tested =
        session.finish("Checking the connection…", check.testOrThrow(address, token));
    if (!tested.succeeded)
        throw Failure(tested.status);
    const ConnectionOutcome saved = check.saveOrThrow(address, token);
    if (!saved.succeeded)
        throw Failure(saved.status);
    line.print(tested.status + "\n");
    return done;
}

Command connectCommand() {
    return {"connect", "save a Canvas address with its token", runConnect};
}

} // namespace ellwynd::cli
