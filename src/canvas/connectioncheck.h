// What the connection settings do, apart from how they look.
#pragma once

#include "canvas/client/canvassession.h"
#include "canvas/tokenstore.h"
#include "preferences/userdefaults.h"

namespace ellwynd {

/// How the connection settings look when they are opened.
struct ConnectionState {
    std::string address;
    std::string placeholder;
    std::string status;
    /// The secret store would not open, so nobody can tell whether a token is saved.
    bool keychainUnavailable = false;
};

/// The outcome of an action, in a sentence for the teacher.
struct ConnectionOutcome {
    bool succeeded = false;
    std::string status;
};

/// Validates, tests and saves a Canvas address with its token, and signs out.
class ConnectionCheck {
  public:
    ConnectionCheck(UserDefaults &defaults, SecretStore &secrets, CanvasSession &session);

    [[nodiscard]] ConnectionState state() const;

    /// Reads the teacher's name with what was typed, or with the saved token where none was; saves
    /// nothing.
    /// @throws Cancelled when a stop was requested.
    [[nodiscard]] QCoro::Task<ConnectionOutcome>
    test(std::string address, std::string token, std::stop_token stop = {}) const;
    /// The same, but a failure of Canvas or of the secret store is thrown as what it is.
    [[nodiscard]] QCoro::Task<ConnectionOutcome>
    testOrThrow(std::string address, std::string token, std::stop_token stop = {}) const;

    /// Saves the token, then the address. A token that cannot be saved saves no address.
    [[nodiscard]] ConnectionOutcome save(const std::string &address, const std::string &token);
    /// The same, but a KeychainError is thrown.
    [[nodiscard]] ConnectionOutcome
    saveOrThrow(const std::string &address, const std::string &token);

    /// Deletes the token and forgets the address, even where the token cannot be deleted.
    void signOut();

    /// The page of Canvas where tokens are made; absent for an address that is not valid.
    [[nodiscard]] static std::optional<std::string> tokenPage(const std::string &address);

    /// The typed address without white space around it; absent unless it is exactly https with a
    /// host. Nothing is added or completed.
    [[nodiscard]] static std::optional<std::string> validAddress(const std::string &typed);

  private:
    UserDefaults &defaults;
    TokenStore tokens;
    CanvasSession &session;
};

/// What is shown below the button for the token page while the address is not valid.
inline constexpr std::string_view tokenPageNeedsAddress =
    "Enter your Canvas address above first, then this will open the page where access tokens are "
    "created.";

inline constexpr std::string_view signOutHelp =
    "Delete the token from the Keychain and forget the Canvas address";

} // namespace ellwynd
