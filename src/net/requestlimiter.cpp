#include "net/requestlimiter.h"

#include <QCoreApplication>
#include <QEvent>

namespace ellwynd {

namespace {

class Admission : public QEvent {
  public:
    explicit Admission(std::coroutine_handle<> waiter) : QEvent(User), waiter(waiter) {}

    std::coroutine_handle<> waiter;
};

} // namespace

bool RequestLimiter::tryAcquire() {
    if (active >= limit || !foreground.empty() || !background.empty())
        return false;
    ++active;
    return true;
}

void RequestLimiter::release() {
    --active;
    admit();
}

void RequestLimiter::setLimit(int newLimit) {
    limit = newLimit;
    admit();
}

void RequestLimiter::admit() {
    while (active < limit && !(foreground.empty() && background.empty())) {
        ++active;
        Waiters &waiting = foreground.empty() ? background : foreground;
        const auto next = waiting.front();
        waiting.pop_front();
        // Through the event loop, so that the waiter does not run inside the releasing frame, but
        // before other responses that have arrived are read: the server should not be idle.
        QCoreApplication::postEvent(this, new Admission(next), Qt::HighEventPriority);
    }
}

void RequestLimiter::customEvent(QEvent *event) {
    static_cast<Admission *>(event)->waiter.resume();
}

} // namespace ellwynd
