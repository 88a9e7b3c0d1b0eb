// The computer coming back from sleep.
#pragma once

#include <functional>
#include <memory>

namespace ellwynd {

/// Calls `woke` on this thread's event loop each time the computer wakes, as logind tells it
/// (org.freedesktop.login1, PrepareForSleep), for as long as the returned handle lives. Without a
/// system bus nothing is told.
[[nodiscard]] std::shared_ptr<void> observeWake(std::function<void()> woke);

} // namespace ellwynd
