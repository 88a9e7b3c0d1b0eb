// Work that must not block the main thread, one piece after the other.
#pragma once

#include <functional>

namespace ellwynd {

class WorkQueue {
  public:
    WorkQueue() = default;
    WorkQueue(const WorkQueue &) = delete;
    WorkQueue &operator=(const WorkQueue &) = delete;
    virtual ~WorkQueue() = default;

    /// Runs `work`, which must not throw, on another thread, after all work added earlier; then
    /// `done` on the thread that owns the queue. Both may be called after the caller is gone, so
    /// they must hold what they use; `done` is not called once the queue is destroyed.
    virtual void run(std::function<void()> work, std::function<void()> done) = 0;
};

} // namespace ellwynd
