// The area of the desktop that shows the items of running programs.
#pragma once

#include <chrono>

namespace ellwynd {

/// Waits until the desktop shows status items; for programs that the desktop starts at login, which
/// may be ahead of it. Blocks at most for `limit`, while events are handled. Returns whether there
/// is a status area; false at once without a session bus.
bool waitForStatusArea(std::chrono::milliseconds limit);

} // namespace ellwynd
