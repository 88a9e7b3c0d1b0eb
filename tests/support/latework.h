// A queue of background work for tests, without a thread.
#pragma once

#include "base/sharedstore.h"

#include <algorithm>
#include <deque>
#include <memory>
#include <utility>

namespace ellwynd::test {

/// Queues background work and runs it on the calling thread: in `finish`, or when the program waits
/// for its future. Must outlive the stores that use it.
class LateWork {
  public:
    [[nodiscard]] StartWork starter() {
        return [this](std::function<void()> work) {
            jobs.push_back(std::make_shared<std::function<void()>>(std::move(work)));
            return std::async(std::launch::deferred, [job = jobs.back()] { run(*job); });
        };
    }

    /// Whether queued work has not run yet.
    [[nodiscard]] bool isPending() const {
        return std::ranges::any_of(jobs, [](const auto &job) { return *job != nullptr; });
    }

    /// Runs the queued work in order.
    void finish() {
        for (; !jobs.empty(); jobs.pop_front())
            run(*jobs.front());
    }

  private:
    using Job = std::function<void()>;

    static void run(Job &job) {
        if (const Job work = std::exchange(job, nullptr))
            work();
    }

    std::deque<std::shared_ptr<Job>> jobs;
};

} // namespace ellwynd::test
