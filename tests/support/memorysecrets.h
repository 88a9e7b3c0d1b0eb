// A secret store in memory that can fail on demand.
#pragma once

#include "platform/secrets/secretstore.h"

#include <map>

namespace ellwynd::test {

class MemorySecrets final : public SecretStore {
  public:
    std::map<std::pair<std::string, std::string>, std::string> secrets;
    /// Thrown by every operation while set.
    std::optional<KeychainError> failure;
    int calls = 0;

    std::optional<std::string>
    read(const std::string &service, const std::string &account, const SecretAccess &) override {
        call();
        const auto found = secrets.find({service, account});
        return found != secrets.end() ? std::optional{found->second} : std::nullopt;
    }

    void save(
        const std::string &secret, const std::string &service, const std::string &account,
        const SecretAccess &) override {
        call();
        secrets[{service, account}] = secret;
    }

    void
    remove(const std::string &service, const std::string &account, const SecretAccess &) override {
        call();
        secrets.erase({service, account});
    }

    /// For an owner that this object outlives.
    [[nodiscard]] std::shared_ptr<SecretStore> shared() { return {std::shared_ptr<void>(), this}; }

  private:
    void call() {
        ++calls;
        if (failure)
            throw KeychainError(*failure);
    }
};

} // namespace ellwynd::test
