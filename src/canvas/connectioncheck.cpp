#include "canvas/connectioncheck.h"

#include "base/log.h"
#include "canvas/client/canvasclient.h"
#include "net/origin.h"

#include <QString>

#include <fmt/format.h>

namespace ellwynd {

namespace {

using Field = ConnectionOutcome::Field;

constexpr Log logger{"settings"};
constexpr auto exampleAddress = "https://canvas.example.edu";

std::string trimmed(const std::string &text) {
    return QString::fromStdString(text).trimmed().toStdString();
}

std::string savedStatus(const std::string &host) {
    return fmt::format("A token is saved in your Keychain for {}.", host);
}

std::string adviceFor(const KeychainError &error) {
    switch (error.status()) {
    case KeychainError::locked:
    case KeychainError::dismissed:
        return "Unlock your keyring, and try again.";
    case KeychainError::unavailable:
        return "Start the keyring or password manager of your desktop, and try again.";
    case KeychainError::timedOut:
        return "If the keyring asks for its password, answer it, and try again.";
    default:
        return {};
    }
}

ConnectionOutcome failure(const KeychainError &error) {
    return {.status = error.what(), .advice = adviceFor(error)};
}

} // namespace

ConnectionCheck::ConnectionCheck(
    UserDefaults &defaults, AsyncTokenStore &tokens, CanvasSession &session)
    : defaults(defaults), tokens(tokens), session(session) {}

std::optional<std::string> ConnectionCheck::validAddress(const std::string &typed) {
    std::string address = trimmed(typed);
    return httpsURL(address) ? std::optional{address} : std::nullopt;
}

std::optional<std::string> ConnectionCheck::suggestedAddress(const std::string &typed) {
    const QString text = QString::fromStdString(typed).trimmed();
    const qsizetype scheme = text.indexOf(QStringLiteral("://"));
    // An email address.
    if (scheme < 0 && text.contains(u'@'))
        return std::nullopt;
    const QUrl url(scheme < 0 ? QStringLiteral("https://") + text : text, QUrl::StrictMode);
    const bool isWeb =
        url.scheme() == QStringLiteral("https") || url.scheme() == QStringLiteral("http");
    // Only what looks like a name of the internet: a word that is still being typed does not.
    if (!url.isValid() || !isWeb || !url.host().contains(u'.') || url.host().endsWith(u'.'))
        return std::nullopt;
    QUrl bare;
    bare.setScheme(QStringLiteral("https"));
    bare.setHost(url.host());
    if (url.scheme() == QStringLiteral("https"))
        bare.setPort(url.port());
    const QString suggested = bare.toString();
    if (text == suggested || text == suggested + u'/')
        return std::nullopt;
    return suggested.toStdString();
}

std::string ConnectionCheck::savedAddress() const {
    return defaults.value(preferences::canvasBaseURL);
}

QCoro::Task<ConnectionState> ConnectionCheck::state() const {
    ConnectionState state{.address = savedAddress()};
    const std::string host = TokenStore::accountOf(state.address);
    std::optional<std::string> token;
    try {
        if (!state.address.empty()) {
            auto reading = tokens.readToken(host, UnlockPrompt::allowed);
            token = co_await reading;
        }
        if (token) {
            state.placeholder = "Token saved — leave blank to keep it";
            state.status = savedStatus(host);
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
    co_return state;
}

QCoro::Task<ConnectionOutcome> ConnectionCheck::testOrThrow(
    std::string typedAddress, std::string typedToken, std::stop_token stop) const {
    const auto address = validAddress(typedAddress);
    if (!address) {
        co_return ConnectionOutcome{
            .status = std::string("Enter your Canvas address first — it should look like ") +
                exampleAddress + ".",
            .field = Field::address};
    }
    CanvasSession &requests = session;
    try {
        std::optional<std::string> token = trimmed(typedToken);
        if (token->empty()) {
            auto reading =
                tokens.readToken(TokenStore::accountOf(*address), UnlockPrompt::allowed, stop);
            token = co_await reading;
        }
        if (!token)
            co_return ConnectionOutcome{.status = "Paste your Canvas access token first."};
        CanvasClient client(*address, *token, requests, stop);
        auto fetching = client.fetchCurrentUser();
        const std::string name = co_await fetching;
        co_return ConnectionOutcome{.succeeded = true, .status = "Connected as " + name};
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
    } catch (const CanvasError &error) {
        outcome = {.status = error.errorDescription(), .advice = error.recoverySuggestion()};
        // A token that is refused, or an address that answers something else than Canvas.
        if (error.kind() != CanvasError::Kind::unauthorized)
            outcome.field = Field::address;
    } catch (const KeychainError &error) {
        outcome = failure(error);
    } catch (const std::exception &error) {
        outcome = {.status = error.what()};
    }
    co_return outcome;
}

QCoro::Task<ConnectionOutcome>
ConnectionCheck::saveOrThrow(std::string typedAddress, std::string typedToken) {
    const auto address = validAddress(typedAddress);
    if (!address) {
        co_return ConnectionOutcome{
            .status = std::string("Enter your institution's Canvas address, including https:// — "
                                  "for example ") +
                exampleAddress + ". It is the address you use to sign in to Canvas.",
            .field = Field::address};
    }
    UserDefaults &saved = defaults;
    const std::string host = TokenStore::accountOf(*address);
    const std::string token = trimmed(typedToken);
    if (!token.empty()) {
        auto saving = tokens.saveToken(token, host);
        co_await saving;
    } else {
        auto reading = tokens.readToken(host, UnlockPrompt::allowed);
        if (!co_await reading)
            co_return ConnectionOutcome{.status = "Please paste your Canvas access token."};
    }
    saved.set(preferences::canvasBaseURL, *address);
    logger.info("Saved Canvas connection settings");
    co_return ConnectionOutcome{.succeeded = true, .status = savedStatus(host)};
}

QCoro::Task<ConnectionOutcome> ConnectionCheck::save(std::string address, std::string token) {
    ConnectionOutcome outcome;
    try {
        auto saving = saveOrThrow(std::move(address), std::move(token));
        outcome = co_await saving;
    } catch (const KeychainError &error) {
        outcome = failure(error);
    } catch (const std::exception &error) {
        outcome = {.status = error.what()};
    }
    co_return outcome;
}

QCoro::Task<ConnectionOutcome> ConnectionCheck::signOut() {
    ConnectionOutcome outcome{.succeeded = true, .status = "Signed out."};
    UserDefaults &saved = defaults;
    const std::string host = hostOf(savedAddress());
    try {
        if (!host.empty()) {
            auto deleting = tokens.deleteToken(host);
            co_await deleting;
        }
    } catch (const KeychainError &error) {
        logger.error(std::string("Could not delete the token: ") + error.what());
        outcome = {
            .status = fmt::format("The token could not be deleted. {}", error.what()),
            .advice = fmt::format(
                "It is still in your keyring as “Canvas access token for {}”. Delete it there.",
                host)};
    }
    saved.remove(preferences::canvasBaseURL.name);
    logger.info("Signed out of Canvas and cleared the stored address");
    co_return outcome;
}

} // namespace ellwynd
