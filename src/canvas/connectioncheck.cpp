#include "canvas/connectioncheck.h"

#include "base/log.h"
#include "canvas/client/canvasclient.h"
#include "net/origin.h"

#include <QString>

namespace ellwynd {

namespace {

constexpr Log logger{"settings"};
constexpr auto exampleAddress = "https://canvas.example.edu";

std::string trimmed(const std::string &text) {
    return QString::fromStdString(text).trimmed().toStdString();
}

} // namespace

ConnectionCheck::ConnectionCheck(
    UserDefaults &defaults, SecretStore &secrets, CanvasSession &session)
    : defaults(defaults), tokens(secrets), session(session) {}

std::optional<std::string> ConnectionCheck::validAddress(const std::string &typed) {
    std::string address = trimmed(typed);
    return httpsURL(address) ? std::optional{address} : std::nullopt;
}

ConnectionState ConnectionCheck::state() const {
    ConnectionState state{.address = defaults.value(preferences::canvasBaseURL)};
    const std::string host = TokenStore::accountOf(state.address);
    try {
        if (!state.address.empty() && tokens.readToken(host)) {
            state.placeholder = "Token saved — leave blank to keep it";
            state.status = "A token is saved in your Keychain for " + host + ".";
        } else {
            state.placeholder = "Paste your Canvas access token";
            state.status = "No token saved yet — paste one below to connect.";
        }
    } catch (const KeychainError &error) {
        logger.error(std::string("Could not read the Keychain: ") + error.what());
        state.keychainUnavailable = true;
        state.placeholder = "Keychain unavailable";
        state.status = "Your Keychain would not open, so Ellwynd cannot tell whether a token is "
                       "saved for " +
            host + ". Unlock it in Keychain Access and reopen Ellwynd before pasting a new one.";
    }
    return state;
}

QCoro::Task<ConnectionOutcome> ConnectionCheck::testOrThrow(
    std::string typedAddress, std::string typedToken, std::stop_token stop) const {
    const auto address = validAddress(typedAddress);
    if (!address) {
        co_return ConnectionOutcome{
            false,
            std::string("Enter your Canvas address first — it should look like ") + exampleAddress +
                "."};
    }
    try {
        std::optional<std::string> token = trimmed(typedToken);
        if (token->empty())
            token = tokens.readToken(TokenStore::accountOf(*address));
        if (!token)
            co_return ConnectionOutcome{false, "Paste your Canvas access token first."};
        CanvasClient client(*address, *token, session, stop);
        auto fetching = client.fetchCurrentUser();
        const std::string name = co_await fetching;
        co_return ConnectionOutcome{true, "Connected as " + name};
    } catch (const Cancelled &) {
        throw;
    } catch (...) {
        logger.error("Connection test failed");
        throw;
    }
}

QCoro::Task<ConnectionOutcome>
ConnectionCheck::test(std::string address, std::string token, std::stop_token stop) const {
    ConnectionOutcome outcome;
    try {
        auto testing = testOrThrow(std::move(address), std::move(token), std::move(stop));
        outcome = co_await testing;
    } catch (const Cancelled &) {
        throw;
    } catch (const std::exception &error) {
        outcome = {false, error.what()};
    }
    co_return outcome;
}

ConnectionOutcome
ConnectionCheck::saveOrThrow(const std::string &typedAddress, const std::string &typedToken) {
    const auto address = validAddress(typedAddress);
    if (!address) {
        return {
            false,
            std::string(
                "Enter your institution's Canvas address, including https:// — for example ") +
                exampleAddress + ". It is the address you use to sign in to Canvas."};
    }
    const std::string host = TokenStore::accountOf(*address);
    const std::string token = trimmed(typedToken);
    if (!token.empty())
        tokens.saveToken(token, host);
    else if (!tokens.readToken(host))
        return {false, "Please paste your Canvas access token."};
    defaults.set(preferences::canvasBaseURL, *address);
    logger.info("Saved Canvas connection settings");
    return {true, "A token is saved in your Keychain for " + host + "."};
}

ConnectionOutcome ConnectionCheck::save(const std::string &address, const std::string &token) {
    try {
        return saveOrThrow(address, token);
    } catch (const KeychainError &error) {
        return {false, error.what()};
    }
}

void ConnectionCheck::signOut() {
    const std::string address = defaults.value(preferences::canvasBaseURL);
    const std::string host = hostOf(address);
    try {
        if (!host.empty())
            tokens.deleteToken(host);
    } catch (const KeychainError &error) {
        logger.error(std::string("Could not delete the token: ") + error.what());
    }
    defaults.remove(preferences::canvasBaseURL.name);
    logger.info("Signed out of Canvas and cleared the stored address");
}

std::optional<std::string> ConnectionCheck::tokenPage(const std::string &address) {
    auto valid = validAddress(address);
    if (!valid)
        return std::nullopt;
    while (valid->ends_with('/'))
        valid->pop_back();
    return *valid + "/profile/settings";
}

} // namespace ellwynd
