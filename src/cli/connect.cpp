#include "canvas/connectioncheck.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/terminaltext.h"

namespace ellwynd::cli {

static int runConnect(CommandContext &context, const QStringList &words) {
    CommandLine line(
        context, "connect",
        "Read an access token from standard input, test the connection and save it.");
    line.argument("ADDRESS", "Your institution's Canvas address, including https://.");
    if (!line.parse(words))
        return done;
    refuseSample(context, "connect");
    const std::string token = context.readSecret("Access token: ");

    ConnectionCheck check(context.defaults(), context.tokens(), context.http());
    const std::string address = line.word(0);
    const ConnectionOutcome tested =
        context.finish("Checking the connection…", check.testOrThrow(address, token));
    if (!tested.succeeded)
        throw Failure(tested.status);
    const ConnectionOutcome saved =
        context.finish("Saving the token…", check.saveOrThrow(address, token));
    if (!saved.succeeded)
        throw Failure(saved.status);
    requireSaved(context);
    line.print(terminalText(tested.status) + "\n");
    return done;
}

Command connectCommand() {
    return {"connect", "save a Canvas address with its token", runConnect};
}

} // namespace ellwynd::cli
