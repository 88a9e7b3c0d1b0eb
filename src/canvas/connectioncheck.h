// The actions of the connection settings, without their user interface.
#pragma once

#include "canvas/asynctokenstore.h"
#include "canvas/client/canvassession.h"
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
    enum class Field { address, token };

    bool succeeded = false;
    /// A sentence for the teacher.
    std::string status;
    /// What the teacher can do about a failure; may be empty.
    std::string advice{};
    /// The field that the status is about.
    Field field = Field::token;
};

/// Validates, tests and saves a Canvas address with its token, and signs out. The tasks may outlive
/// this object, but not its arguments.
class ConnectionCheck {
  public:
    ConnectionCheck(UserDefaults &defaults, AsyncTokenStore &tokens, CanvasSession &session);

    /// The saved address; empty for none.
    [[nodiscard]] std::string savedAddress() const;
    /// Reads the secret store, which may prompt.
    [[nodiscard]] QCoro::Task<ConnectionState> state() const;

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
    [[nodiscard]] QCoro::Task<ConnectionOutcome> save(std::string address, std::string token);
    /// Like `save`, but throws KeychainError.
    [[nodiscard]] QCoro::Task<ConnectionOutcome>
    saveOrThrow(std::string address, std::string token);

    /// Deletes the token and the address; the address even if the token cannot be deleted, which is
    /// a failure that says where the token is.
    [[nodiscard]] QCoro::Task<ConnectionOutcome> signOut();

    /// The typed address without surrounding white space; absent unless it is valid (see
    /// `httpsURL`).
    [[nodiscard]] static std::optional<std::string> validAddress(const std::string &typed);
    /// The Canvas address that the typed text probably means: "https://" with its host and port.
    /// Absent when the text is that address already, or names no host.
    [[nodiscard]] static std::optional<std::string> suggestedAddress(const std::string &typed);

  private:
    UserDefaults &defaults;
    AsyncTokenStore &tokens;
    CanvasSession &session;
};

/// The text below the button for the token page while the address is not valid.
inline constexpr std::string_view tokenPageNeedsAddress =
    "Enter your Canvas address above first, then this will open the page where access tokens are "
    "created.";

/// The question before signing out, which cannot be undone.
inline constexpr std::string_view signOutQuestion = "Sign out of Canvas?";
inline constexpr std::string_view signOutWarning =
    "Canvas will not show this token again. To connect again, create a new one in Canvas.";

inline constexpr std::string_view signOutHelp =
    "Delete the token from the Keychain and forget the Canvas address";

} // namespace ellwynd
