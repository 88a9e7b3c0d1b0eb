// Values whose memory takes milliseconds to release.
#pragma once

#include <memory>

namespace ellwynd {

/// Gives up a value. If that was its last owner, a thread of the global pool releases its memory a
/// moment later, when the event loop has handled the current event.
void releaseAside(std::shared_ptr<const void> value);

/// Shares a value with some hundred thousand allocations. When its last owner has gone, it is
/// released by `releaseAside`, so that the event loop does not wait.
template<class T>
[[nodiscard]] std::shared_ptr<const T> shareLarge(T value) {
    return {new T(std::move(value)), [](const T *unused) {
                releaseAside(std::shared_ptr<const T>(unused));
            }};
}

} // namespace ellwynd
