// Secrets in the freedesktop Secret Service, through libsecret.
#pragma once

#include "platform/secrets/secretstore.h"

namespace ellwynd {

/// The desktop's keyring or password manager, on the session bus.
class SecretService final : public SecretStore {
  public:
    std::optional<std::string> read(
        const std::string &service, const std::string &account,
        const SecretAccess &access) override;
    void save(
        const std::string &secret, const std::string &service, const std::string &account,
        const SecretAccess &access) override;
    void remove(const std::string &service, const std::string &account, const SecretAccess &access)
        override;
};

} // namespace ellwynd
