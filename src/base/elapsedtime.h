// How much time has passed, whatever the clock on the wall says.
#pragma once

#include <chrono>

namespace ellwynd {

/// Time since the machine started, its sleep included (CLOCK_BOOTTIME): a clock that is set forward
/// or back does not change it. Two of them tell an age. Fine enough to tell what was read before a
/// request from what was read after it.
using ElapsedTime = std::chrono::nanoseconds;

/// A function that answers "now" for ages.
using ElapsedClock = ElapsedTime (*)();

/// The machine's own.
[[nodiscard]] ElapsedTime elapsedNow();

} // namespace ellwynd
