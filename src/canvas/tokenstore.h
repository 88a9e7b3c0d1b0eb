// The teacher's access token, one for each Canvas host.
#pragma once

#include "platform/secrets/secretstore.h"

namespace ellwynd {

/// Keeps tokens in the secret store and nowhere else. A token saved for one host is never offered
/// to another. Every operation throws KeychainError.
class TokenStore {
  public:
    static constexpr const char *service = "com.varnok.Ellwynd.token";

    explicit TokenStore(SecretStore &store) : secrets(store) {}

    /// @param account the host of the Canvas address; see `accountOf`. Absent when no token is
    ///        saved, or what is saved is no UTF-8 text.
    [[nodiscard]] std::optional<std::string> readToken(const std::string &account) const;
    void saveToken(const std::string &token, const std::string &account) const;
    /// A token that does not exist is deleted already.
    void deleteToken(const std::string &account) const;

    /// The account of a saved address: its host, or the whole text where it has none.
    [[nodiscard]] static std::string accountOf(const std::string &address);

  private:
    SecretStore &secrets;
};

} // namespace ellwynd
