// Which requests go first where only so many may be in flight.
#pragma once

namespace ellwynd {

enum class RequestPriority {
    /// What the teacher is waiting for.
    foreground,
    /// What the program reads ahead.
    background,
};

} // namespace ellwynd
