// The teacher's access tokens, one for each Canvas host.
#pragma once

#include "platform/secrets/secretstore.h"

namespace ellwynd {

/// Keeps tokens in the secret store only. A token saved for one host is never used for another.
/// Every operation blocks and throws KeychainError; windows use AsyncTokenStore.
class TokenStore {
  public:
    static constexpr const char *service = "com.varnok.Ellwynd.token";

    explicit TokenStore(SecretStore &secrets) : secrets(secrets) {}

    /// @param account the host of the Canvas address; see `accountOf`.
    /// @return absent when no token is saved, or the secret is not UTF-8 text.
    [[nodiscard]] std::optional<std::string>
    readToken(const std::string &account, const SecretAccess &access = {}) const;
    void saveToken(
        const std::string &token, const std::string &account,
        const SecretAccess &access = {}) const;
    /// Deletes the token, if there is one.
    void deleteToken(const std::string &account, const SecretAccess &access = {}) const;

    /// The account of a saved address: its host, or the whole address if it has none.
    [[nodiscard]] static std::string accountOf(const std::string &address);

  private:
    SecretStore &secrets;
};

} // namespace ellwynd
