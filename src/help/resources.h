// The texts that are compiled into this module.
#pragma once

#include <string>
#include <string_view>

namespace ellwynd {

/// @param path relative to the module's resources: "topics/privacy.md".
/// @throws std::invalid_argument if it does not exist.
[[nodiscard]] std::string resourceText(std::string_view path);

} // namespace ellwynd
