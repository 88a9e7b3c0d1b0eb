// Where secrets are kept: the platform's secret store, behind three operations.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace ellwynd {

/// The secret store could not be read or written, which never means that it holds nothing.
class KeychainError : public std::runtime_error {
  public:
    /// What a status stands for; the numbers are the program's own.
    enum Status : std::int32_t {
        /// The service failed in a way of its own.
        failed = 1,
        /// The desktop session offers no secret store.
        unavailable = 2,
        /// The keyring is locked and stayed so.
        locked = 3,
        /// The teacher dismissed the prompt.
        dismissed = 4,
    };

    /// @param message the system's; empty when it has none.
    KeychainError(std::int32_t status, const std::string &message);

    [[nodiscard]] std::int32_t status() const { return code; }

  private:
    std::int32_t code;
};

/// Secrets by service and account, one for each pair. Every operation may block on a prompt of the
/// system's, and throws KeychainError.
class SecretStore {
  public:
    SecretStore() = default;
    SecretStore(const SecretStore &) = delete;
    SecretStore &operator=(const SecretStore &) = delete;
    virtual ~SecretStore() = default;

    /// The secret's bytes; absent when there is none.
    [[nodiscard]] virtual std::optional<std::string>
    read(const std::string &service, const std::string &account) = 0;
    /// Replaces the secret.
    virtual void
    save(const std::string &secret, const std::string &service, const std::string &account) = 0;
    /// Removes it; one that does not exist is removed already.
    virtual void remove(const std::string &service, const std::string &account) = 0;
};

/// The desktop's secret store. It is first asked when it is used.
[[nodiscard]] std::unique_ptr<SecretStore> makeSecretStore();

} // namespace ellwynd
