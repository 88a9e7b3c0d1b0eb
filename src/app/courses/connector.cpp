#include "app/courses/connector.h"

#include "canvas/client/canvasclient.h"
#include "canvas/sample/samplecanvasclient.h"

namespace ellwynd {

Connector::Connector(
    UserDefaults &defaults, AsyncTokenStore &tokens, CanvasSession &session, Clock now)
    : defaults(defaults), tokens(tokens), session(session), now(now) {}

QCoro::Task<std::shared_ptr<CanvasReading>>
Connector::open(UnlockPrompt prompt, std::stop_token stop) const {
    // A task returns exactly its type.
    std::shared_ptr<CanvasReading> opened;
    const std::string address = defaults.value(preferences::canvasBaseURL);
    if (defaults.value(preferences::sampleData)) {
        opened = std::make_shared<SampleCanvasClient>(now);
    } else if (!address.empty()) {
        CanvasSession &requests = session;
        auto reading = tokens.readToken(TokenStore::accountOf(address), prompt, std::move(stop));
        if (const std::optional<std::string> token = co_await reading)
            opened = std::make_shared<CanvasClient>(address, *token, requests);
    }
    co_return opened;
}

} // namespace ellwynd
