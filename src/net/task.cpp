#include "net/task.h"

#include "base/log.h"

#include <QCoro/QCoroTimer>
#include <QTimer>

#include <fmt/format.h>

namespace ellwynd {

namespace {

constexpr Log logger{"network"};

QCoro::Task<> logFailure(QCoro::Task<> task, std::string what) {
    try {
        co_await task;
    } catch (const Cancelled &) {
    } catch (const std::exception &error) {
        logger.error(fmt::format("{} failed: {}", what, error.what()));
    } catch (...) {
        logger.error(fmt::format("{} failed", what));
    }
}

} // namespace

void detach(QCoro::Task<> task, std::string what) {
    // A dropped task continues to run.
    logFailure(std::move(task), std::move(what));
}

QCoro::Task<> sleepFor(std::chrono::milliseconds duration, std::stop_token stop) {
    QTimer timer;
    timer.setSingleShot(true);
    // A coarse timer may fire 5 % early.
    timer.setTimerType(Qt::PreciseTimer);
    timer.start(duration);
    // Restarting the timer resumes the frame from the event loop and not inside the callback.
    const std::stop_callback wake(stop, [&timer] { timer.start(0); });
    co_await timer;
    if (stop.stop_requested())
        throw Cancelled();
}

} // namespace ellwynd
