// Work of a coroutine on another thread.
#pragma once

#include <QCoro/QCoroFuture>
#include <QCoro/QCoroTask>
#include <QPromise>
#include <QThreadPool>

#include <exception>
#include <memory>
#include <optional>

namespace ellwynd {

/// Calls `work` on a thread of the global pool. The task ends on the thread that awaits it, with
/// the result or the exception. What `work` refers to must live until then.
template<class Work>
[[nodiscard]] QCoro::Task<std::invoke_result_t<Work>> inThread(Work work) {
    struct State {
        QPromise<void> end;
        std::optional<std::invoke_result_t<Work>> result;
        std::exception_ptr error;
    };
    const auto state = std::make_shared<State>();
    state->end.start();
    QFuture<void> ending = state->end.future();
    QThreadPool::globalInstance()->start([state, work = std::move(work)]() mutable {
        try {
            state->result.emplace(work());
        } catch (...) {
            state->error = std::current_exception();
        }
        state->end.finish();
    });
    co_await qCoro(ending).waitForFinished();
    if (state->error)
        std::rethrow_exception(state->error);
    co_return std::move(*state->result);
}

} // namespace ellwynd
