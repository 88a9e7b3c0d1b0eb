// The actions of the connection settings, without their user interface.
#pragma once

#include "canvas/client/canvassession.h"
#include "canvas/tokenstore.h"
#include "preferences/userdefaults.h"

namespace ellwynd {

/// The contents of the connection settings when they are opened.
struct ConnectionState {
    std::string address;
    std::string placeholder;
    std::string status;
    /// The secret store cannot be read, so it is not known whether a token is saved.
    bool keychainUnavailable = false;
};

/// The outcome of an action.
struct ConnectionOutcome {
    bool succeeded = false;
    /// A sentence for the teacher.
    std::string status;
};

/// Validates, tests and saves a Canvas address with its token, and signs out.
class ConnectionCheck {
  public:
    ConnectionCheck(UserDefaults &defaults, SecretStore &secrets, CanvasSession &session);

    [[nodiscard]] ConnectionState state() const;

    /// Reads the teacher's name with the typed address and token. An empty token means the saved
    /// one. Saves nothing.
    /// @throws Cancelled when a stop was requested.
    [[nodiscard]] QCoro::Task<ConnectionOutcome>
    test(std::string address, std::string token, std::stop_token stop = {}) const;
    /// Like `test`, but throws CanvasError and KeychainError.
    [[nodiscard]] QCoro::Task<ConnectionOutcome>
    testOrThrow(std::string address, std::string token, std::stop_token stop = {}) const;

    /// Saves the token, then the address; neither if the token cannot be saved. An empty token
    /// keeps the saved one.
    [[nodiscard]] ConnectionOutcome save(const std::string &address, const std::string &token);
    /// Like `save`, but throws KeychainError.
    [[nodiscard]] ConnectionOutcome
    saveOrThrow(const std::string &address, const std::string &token);

    /// Deletes the token and the address; the address even if the token cannot be deleted.
    void signOut();

    /// The Canvas page where tokens are created; absent for an address that is not valid.
    [[nodiscard]] static std::optional<std::string> tokenPage(const std::string &address);

    /// The typed address without surrounding white space; absent unless it is valid (see
    /// `httpsURL`).
    [[nodiscard]] static std::optional<std::string> validAddress(const std::string &typed);

  private:
    UserDefaults &defaults;
    TokenStore tokens;
    CanvasSession &session;
};

/// The text below the button for the token page while the address is not valid.
inline constexpr std::string_view tokenPageNeedsAddress =
    "Enter your Canvas address above first, then this will open the page where access tokens are "
    "created.";

inline constexpr std::string_view signOutHelp =
    "Delete the token from the Keychain and forget the Canvas address";

} // namespace ellwynd
