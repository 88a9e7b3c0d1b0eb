#include "platform/secrets/secretstore.h"

namespace ellwynd {

KeychainError::KeychainError(std::int32_t code, const std::string &message)
    : std::runtime_error(
          "Keychain error (" + std::to_string(code) +
          "): " + (message.empty() ? "unknown error" : message)),
      code(code) {}

} // namespace ellwynd
