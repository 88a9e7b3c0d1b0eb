// Whether the desktop prefers dark windows.
#pragma once

#include <functional>
#include <memory>
#include <optional>

namespace ellwynd::colorScheme {

/// The desktop's preference now; absent where it has none or cannot be asked. Blocks for a fraction
/// of a second at most.
[[nodiscard]] std::optional<bool> isDark();

/// Calls `changed` whenever the preference changes, until the returned handle is released.
[[nodiscard]] std::shared_ptr<void> observe(std::function<void(bool dark)> changed);

} // namespace ellwynd::colorScheme
