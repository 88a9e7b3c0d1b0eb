// Whether the desktop prefers dark windows.
#pragma once

#include <functional>
#include <memory>
#include <optional>

namespace ellwynd::colorScheme {

/// The desktop's current preference; absent if it has none or does not reply. Blocks for a fraction
/// of a second at most.
[[nodiscard]] std::optional<bool> isDark();

/// Calls `changed` whenever the preference changes, for as long as the returned handle lives.
/// @param changed gets what `isDark` would return.
[[nodiscard]] std::shared_ptr<void> observe(std::function<void(std::optional<bool> dark)> changed);

} // namespace ellwynd::colorScheme
