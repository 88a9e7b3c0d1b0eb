// Runs a task to its end where no event loop is running yet.
#pragma once

#include <QCoro/QCoroTask>
#include <QEventLoop>

#include <exception>
#include <optional>

namespace ellwynd {

/// Runs an event loop until the task is done. Returns its value, or throws its exception. For the
/// command line and the tests only: windows must not block.
template<class T>
T runToEnd(QCoro::Task<T> task) {
    struct Outcome {
        std::optional<T> value;
        std::exception_ptr error;
        bool done = false;
    };
    const auto run = [](QCoro::Task<T> work, Outcome &result, QEventLoop &until) -> QCoro::Task<> {
        try {
            result.value.emplace(co_await work);
        } catch (...) {
            result.error = std::current_exception();
        }
        result.done = true;
        until.quit();
    };
    Outcome outcome;
    QEventLoop loop;
    const auto running = run(std::move(task), outcome, loop);
    if (!outcome.done)
        loop.exec();
    if (outcome.error)
        std::rethrow_exception(outcome.error);
    return std::move(*outcome.value);
}

} // namespace ellwynd
