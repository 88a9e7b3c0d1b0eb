#include "platform/secrets/secretstore.h"

namespace ellwynd {

KeychainError::KeychainError(std::int32_t status, const std::string &message)
    : std::runtime_error(
          "Keychain error (" + std::to_string(status) +
          "): " + (message.empty() ? "unknown error" : message)),
      code(status) {}

} // namespace ellwynd
