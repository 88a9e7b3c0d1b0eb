// Limits how many requests are in flight at a time.
#pragma once

#include "net/requestpriority.h"

#include <QObject>

#include <coroutine>
#include <deque>
#include <utility>

namespace ellwynd {

/// Grants permits, at most `limit` at a time. Waiters in the foreground are admitted before those
/// in the background, and otherwise first in, first out. Must outlive its permits and its waiters.
/// Used on the main thread.
class RequestLimiter : public QObject {
  public:
    /// The right to have one request in flight; released on destruction.
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
        RequestPriority priority;
        bool await_ready() { return limiter.tryAcquire(); }
        void await_suspend(std::coroutine_handle<> waiter) {
            limiter.queue(priority).push_back(waiter);
        }
        Permit await_resume() { return Permit(limiter); }
    };

    explicit RequestLimiter(int limit) : limit(limit) {}

    /// Awaits a permit.
    [[nodiscard]] Awaiter acquire(RequestPriority priority = RequestPriority::foreground) {
        return {*this, priority};
    }
    /// A lower limit takes effect as permits are released.
    void setLimit(int newLimit);
    [[nodiscard]] int inFlight() const { return active; }

  protected:
    /// Resumes an admitted waiter.
    void customEvent(QEvent *event) override;

  private:
    using Waiters = std::deque<std::coroutine_handle<>>;

    [[nodiscard]] Waiters &queue(RequestPriority priority) {
        return priority == RequestPriority::foreground ? foreground : background;
    }
    bool tryAcquire();
    void release();
    void admit();

    int limit;
    int active = 0;
    Waiters foreground;
    Waiters background;
};

} // namespace ellwynd
