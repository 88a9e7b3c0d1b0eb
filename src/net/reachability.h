// Hearing that there is a network again.
#pragma once

#include <functional>
#include <memory>

namespace ellwynd {

/// Calls `reachable` from this thread's event loop each time the system reports a network after
/// there was none, for as long as the returned handle lives. Never called where the system does not
/// report it.
[[nodiscard]] std::shared_ptr<void> observeReachability(std::function<void()> reachable);

} // namespace ellwynd
