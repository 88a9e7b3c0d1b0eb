#include "base/text.h"
#include "canvas/tokenstore.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"

#include <nlohmann/json.hpp>

namespace ellwynd::cli {

namespace {

std::string stateOf(Session &session, const std::string &address) {
    if (session.defaults().value(preferences::sampleData))
        return "sample";
    if (address.empty())
        return "not connected";
    try {
        const TokenStore tokens(session.secrets());
        return tokens.readToken(TokenStore::accountOf(address)) ? "connected" : "not connected";
    } catch (const KeychainError &error) {
        session.err << oneLine(error.what()) << "\n";
        return "keychain unavailable";
    }
}

} // namespace

static int runStatus(Session &session, const QStringList &words) {
    CommandLine line(session, "status", "Show whether the program is connected.");
    if (!line.parse(words))
        return done;
    const std::string address = session.defaults().value(preferences::canvasBaseURL);
    const std::string state = stateOf(session, address);
    if (line.wantsJSON()) {
        const auto orNull = [](const std::string &text) {
            return text.empty() ? JSON(nullptr) : JSON(text);
        };
        const std::string account = address.empty() ? "" : TokenStore::accountOf(address);
        line.print(printed(
            {{"state", state}, {"address", orNull(address)}, {"account", orNull(account)}}));
    } else {
        line.print(oneLine(state + (address.empty() ? "" : "  " + address)) + "\n");
    }
    return done;
}

Command statusCommand() {
    return {"status", "whether the program is connected", runStatus};
}

} // namespace ellwynd::cli
