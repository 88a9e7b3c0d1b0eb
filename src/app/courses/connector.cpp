#include "app/courses/connector.h"

#include "canvas/client/canvasclient.h"
#include "canvas/sample/samplecanvasclient.h"

namespace ellwynd {

Connector::Connector(UserDefaults &store, SecretStore &secrets, CanvasSession &http, Clock clock)
    : defaults(store), tokens(secrets), session(http), now(clock) {}

std::shared_ptr<CanvasReading> Connector::open() const {
    if (defaults.value(preferences::sampleData))
        return std::make_shared<SampleCanvasClient>(now);
    const std::string address = defaults.value(preferences::canvasBaseURL);
    if (address.empty())
        return nullptr;
    const auto token = tokens.readToken(TokenStore::accountOf(address));
    return token ? std::make_shared<CanvasClient>(address, *token, session) : nullptr;
}

} // namespace ellwynd
