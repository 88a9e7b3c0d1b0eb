// A work queue without a thread.
#pragma once

#include "platform/background/workqueue.h"

#include <deque>
#include <utility>

namespace ellwynd::test {

/// Runs work on the calling thread, in order: at once, or step by step while it is held.
class DirectQueue final : public WorkQueue {
  public:
    void run(std::function<void()> work, std::function<void()> done) override {
        jobs.emplace_back(std::move(work), std::move(done));
        if (!isHeld)
            finish();
    }

    void finish() {
        if (isRunning)
            return;
        while (step()) {
        }
    }

    /// Does the next piece of work. False if there is none.
    bool step() {
        if (jobs.empty())
            return false;
        const auto [work, done] = std::move(jobs.front());
        jobs.pop_front();
        isRunning = true;
        work();
        done();
        isRunning = false;
        return true;
    }

    /// As when the program is killed.
    void drop() { jobs.clear(); }

    bool isHeld = false;

  private:
    std::deque<std::pair<std::function<void()>, std::function<void()>>> jobs;
    bool isRunning = false;
};

} // namespace ellwynd::test
