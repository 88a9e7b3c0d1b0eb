// The interface of the platform's secret store.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <stop_token>
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
        /// The service did not answer in time, or nobody answered its prompt.
        timedOut = 5,
    };

    /// @param code the status.
    /// @param message the system's message; may be empty.
    KeychainError(std::int32_t code, const std::string &message);

    [[nodiscard]] std::int32_t status() const { return code; }

  private:
    std::int32_t code;
};

/// Whether an operation may ask the teacher to unlock a keyring. Only what the teacher started may.
enum class UnlockPrompt { allowed, never };

/// How an operation on the secret store may wait.
struct SecretAccess {
    UnlockPrompt prompt = UnlockPrompt::allowed;
    /// Ends the operation with KeychainError::timedOut.
    std::stop_token stop{};
};

/// Secrets by service and account, one for each pair. Every operation blocks until the service and
/// its prompt are answered or a stop is requested, and throws KeychainError. Operations may be
/// called from any thread, one at a time.
class SecretStore {
  public:
    SecretStore() = default;
    SecretStore(const SecretStore &) = delete;
    SecretStore &operator=(const SecretStore &) = delete;
    virtual ~SecretStore() = default;

    /// The secret's bytes; absent when there is none. A secret that exists but cannot be loaded is
    /// an error. Nothing is unlocked while an unlocked keyring holds the secret.
    [[nodiscard]] virtual std::optional<std::string>
    read(const std::string &service, const std::string &account, const SecretAccess &access) = 0;
    /// Saves the secret, replacing an existing one in any keyring.
    virtual void save(
        const std::string &secret, const std::string &service, const std::string &account,
        const SecretAccess &access) = 0;
    /// Removes the secret from every keyring, if there is one.
    virtual void
    remove(const std::string &service, const std::string &account, const SecretAccess &access) = 0;
};

/// The desktop's secret store. It is not accessed before the first operation.
[[nodiscard]] std::unique_ptr<SecretStore> makeSecretStore();

} // namespace ellwynd
