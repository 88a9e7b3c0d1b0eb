// Waiting for a condition in an event loop.
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>

namespace ellwynd::test {

/// Runs the event loop until a condition holds, for at most ten seconds.
template<class Condition>
[[nodiscard]] bool until(Condition condition) {
    QDeadlineTimer bound(10'000);
    while (!condition() && !bound.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    return condition();
}

} // namespace ellwynd::test
