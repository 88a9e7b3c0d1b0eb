#include "app/courses/connector.h"

#include "canvas/client/canvasclient.h"
#include "canvas/sample/samplecanvasclient.h"

namespace ellwynd {

Connector::Connector(
    UserDefaults &defaults, SecretStore &secrets, CanvasSession &session, Clock now)
    : defaults(defaults), tokens(secrets), session(session), now(now) {}

std::shared_ptr<CanvasReading> Connector::open(std::stop_token stop) const {
    if (defaults.value(preferences::sampleData))
        return std::make_shared<SampleCanvasClient>(now);
    const std::string address = defaults.value(preferences::canvasBaseURL);
    if (address.empty())
        return nullptr;
    const auto token = tokens.readToken(TokenStore::accountOf(address));
    return token ? std::make_shared<CanvasClient>(address, *token, session, std::move(stop))
                 : nullptr;
}

} // namespace ellwynd
