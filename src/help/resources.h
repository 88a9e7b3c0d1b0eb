// The texts that are compiled into this module.
#pragma once

#include <string>
#include <string_view>

namespace ellwynd {

/// @param path below the module's resources: "topics/privacy.md".
/// @throws std::invalid_argument when there is no such text.
[[nodiscard]] std::string resourceText(std::string_view path);

} // namespace ellwynd
