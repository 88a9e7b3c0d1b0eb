// Waiting for what an event loop brings.
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>

namespace ellwynd::test {

/// Runs the event loop until a condition holds, for a bounded time.
template<class Condition>
[[nodiscard]] bool until(Condition condition) {
    QDeadlineTimer bound(10'000);
    while (!condition() && !bound.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    return condition();
}

} // namespace ellwynd::test
