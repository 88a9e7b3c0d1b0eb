#include "net/requestlimiter.h"

#include <QTimer>

namespace ellwynd {

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
        // Through the event loop, so that the waiter does not run inside the releasing frame.
        QTimer::singleShot(0, [next] { next.resume(); });
    }
}

} // namespace ellwynd
