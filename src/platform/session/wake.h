// Reports when the computer wakes from sleep.
#pragma once

#include <functional>
#include <memory>

namespace ellwynd {

/// Calls `woke` on this thread's event loop each time the computer wakes, for as long as the
/// returned handle lives. Never called where the system does not report it.
[[nodiscard]] std::shared_ptr<void> observeWake(std::function<void()> woke);

} // namespace ellwynd
