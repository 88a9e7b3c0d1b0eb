// The interface of the platform's secret store.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace ellwynd {

/// The secret store could not be read or written. A missing secret is not an error.
class KeychainError : public std::runtime_error {
  public:
    /// The meaning of a status; the numbers are defined by the program.
    enum Status : std::int32_t {
        /// Any other failure of the service.
        failed = 1,
        /// The desktop session offers no secret store.
        unavailable = 2,
        /// The keyring is locked and could not be unlocked.
        locked = 3,
        /// The teacher dismissed the prompt.
        dismissed = 4,
    };

    /// @param code the status.
    /// @param message the system's message; may be empty.
    KeychainError(std::int32_t code, const std::string &message);

    [[nodiscard]] std::int32_t status() const { return code; }

  private:
    std::int32_t code;
};

/// Secrets by service and account, one for each pair. Every operation may block on a system prompt,
/// and throws KeychainError.
class SecretStore {
  public:
    SecretStore() = default;
    SecretStore(const SecretStore &) = delete;
    SecretStore &operator=(const SecretStore &) = delete;
    virtual ~SecretStore() = default;

    /// The secret's bytes; absent when there is none.
    [[nodiscard]] virtual std::optional<std::string>
    read(const std::string &service, const std::string &account) = 0;
    /// Saves the secret, replacing an existing one.
    virtual void
    save(const std::string &secret, const std::string &service, const std::string &account) = 0;
    /// Removes the secret, if there is one.
    virtual void remove(const std::string &service, const std::string &account) = 0;
};

/// The desktop's secret store. It is not accessed before the first operation.
[[nodiscard]] std::unique_ptr<SecretStore> makeSecretStore();

} // namespace ellwynd
