// The work queue with a thread.
#pragma once

#include "platform/background/workqueue.h"

#include <chrono>
#include <memory>

namespace ellwynd {

/// A thread that is started when there is work. `done` is called from the event loop.
class ThreadWorkQueue final : public WorkQueue {
  public:
    ThreadWorkQueue();
    /// Waits for the work that was added, but no longer than a second: it may hang, as in a network
    /// folder that does not answer. Its thread is then left to the end of the process.
    ~ThreadWorkQueue() override;

    void run(std::function<void()> work, std::function<void()> done) override;

    /// Waits until all work is done, what `done` adds included, without an event loop.
    /// @return false if that took longer than `limit`.
    bool finish(std::chrono::milliseconds limit);

  private:
    struct State;
    std::shared_ptr<State> state;
};

} // namespace ellwynd
