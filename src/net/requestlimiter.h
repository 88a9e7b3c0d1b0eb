// How many requests may be in flight at one time.
#pragma once

#include <coroutine>
#include <deque>
#include <utility>

namespace ellwynd {

/// Hands out permits, at most `limit` at a time. Waiters are admitted first in, first out. Must
/// outlive its permits and its waiters; lives on the main thread.
class RequestLimiter {
  public:
    /// The right to have one request in flight, given back on destruction.
    class Permit {
      public:
        explicit Permit(RequestLimiter &limiter) : limiter(&limiter) {}
        Permit(Permit &&other) noexcept : limiter(std::exchange(other.limiter, nullptr)) {}
        Permit &operator=(Permit &&) = delete;
        ~Permit() {
            if (limiter != nullptr)
                limiter->release();
        }

      private:
        RequestLimiter *limiter;
    };

    struct Awaiter {
        RequestLimiter &limiter;
        bool await_ready() { return limiter.tryAcquire(); }
        void await_suspend(std::coroutine_handle<> waiter) { limiter.waiting.push_back(waiter); }
        Permit await_resume() { return Permit(limiter); }
    };

    explicit RequestLimiter(int limit) : limit(limit) {}

    /// `co_await`ed, a permit.
    [[nodiscard]] Awaiter acquire() { return {*this}; }
    /// A lower limit applies as permits are given back.
    void setLimit(int newLimit);
    [[nodiscard]] int inFlight() const { return active; }

  private:
    bool tryAcquire();
    void release();
    void admit();

    int limit;
    int active = 0;
    std::deque<std::coroutine_handle<>> waiting;
};

} // namespace ellwynd
