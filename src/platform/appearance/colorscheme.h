// Whether the desktop wants dark windows, as the freedesktop settings portal tells it.
#pragma once

#include <functional>
#include <memory>
#include <optional>

namespace ellwynd::colorScheme {

/// What the portal says now; absent where none runs, or where it knows no preference. Takes a
/// moment at most, and starts nothing.
[[nodiscard]] std::optional<bool> isDark();

/// Calls `changed` whenever the preference changes, until the returned handle is released.
[[nodiscard]] std::shared_ptr<void> observe(std::function<void(bool dark)> changed);

} // namespace ellwynd::colorScheme
