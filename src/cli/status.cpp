#include "canvas/tokenstore.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"
#include "cli/terminaltext.h"

#include <nlohmann/json.hpp>

namespace ellwynd::cli {

namespace {

std::string stateOf(CommandContext &context, const std::string &address) {
    if (context.defaults().value(preferences::sampleData))
        return "sample";
    if (address.empty())
        return "not connected";
    try {
        auto reading =
            context.tokens().readToken(TokenStore::accountOf(address), UnlockPrompt::allowed);
        const bool hasToken =
            context.finish("Reading the Keychain…", std::move(reading)).has_value();
        return hasToken ? "connected" : "not connected";
    } catch (const KeychainError &error) {
        context.err << terminalText(error.what()) << "\n";
        return "keychain unavailable";
    }
}

} // namespace

static int runStatus(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "status", "Show whether the program is connected.");
    if (!line.parse(words))
        return done;
    const std::string address = context.defaults().value(preferences::canvasBaseURL);
    const std::string state = stateOf(context, address);
    if (line.wantsJSON()) {
        const auto orNull = [](const std::string &text) {
            return text.empty() ? JSON(nullptr) : JSON(text);
        };
        const std::string account = address.empty() ? "" : TokenStore::accountOf(address);
        line.print(printed(
            {{"state", state}, {"address", orNull(address)}, {"account", orNull(account)}}));
    } else {
        line.print(terminalText(state + (address.empty() ? "" : "  " + address)) + "\n");
    }
    return done;
}

Command statusCommand() {
    return {"status", "show whether the program is connected", runStatus};
}

} // namespace ellwynd::cli
