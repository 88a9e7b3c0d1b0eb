// Running a task to its end where there is no event loop yet.
#pragma once

#include <QCoro/QCoroTask>
#include <QEventLoop>

#include <exception>
#include <optional>

namespace ellwynd {

/// Runs an event loop until the task is done and returns its value, or throws what it threw. For
/// the command line and the tests: a window never waits.
template<class T>
T runToEnd(QCoro::Task<T> task) {
    struct Outcome {
        std::optional<T> value;
        std::exception_ptr error;
        bool done = false;
    };
    Outcome outcome;
    QEventLoop loop;
    const auto drive = [](QCoro::Task<T> work, Outcome &into, QEventLoop &until) -> QCoro::Task<> {
        try {
            into.value.emplace(co_await work);
        } catch (...) {
            into.error = std::current_exception();
        }
        into.done = true;
        until.quit();
    };
    const auto driver = drive(std::move(task), outcome, loop);
    if (!outcome.done)
        loop.exec();
    if (outcome.error)
        std::rethrow_exception(outcome.error);
    return std::move(*outcome.value);
}

} // namespace ellwynd
