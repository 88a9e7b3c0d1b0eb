#include "platform/background/threadworkqueue.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QThreadPool>

#include <deque>
#include <mutex>

namespace ellwynd {

namespace {

/// How long the destructor waits for work that was added.
constexpr std::chrono::milliseconds closeLimit{1000};

} // namespace

/// Shared with the thread, which may still be at work when the queue is gone.
struct ThreadWorkQueue::State {
    /// Lives on the thread of the queue; null once the queue is destroyed.
    std::unique_ptr<QObject> owner = std::make_unique<QObject>();
    std::unique_ptr<QThreadPool> thread = std::make_unique<QThreadPool>();
    std::mutex mutex;
    /// Work that ended, and whose `done` was not called yet.
    std::deque<std::function<void()>> ended;
    /// On the thread of the queue: work whose `done` was not called yet.
    std::size_t pending = 0;

    void callDone() {
        for (;;) {
            std::function<void()> done;
            {
                const std::scoped_lock lock(mutex);
                if (ended.empty())
                    return;
                done = std::move(ended.front());
                ended.pop_front();
            }
            --pending;
            done();
        }
    }
};

ThreadWorkQueue::ThreadWorkQueue() : state(std::make_shared<State>()) {
    state->thread->setMaxThreadCount(1);
}

ThreadWorkQueue::~ThreadWorkQueue() {
    const bool isDone = state->thread->waitForDone(int(closeLimit.count()));
    std::deque<std::function<void()>> dropped;
    const std::scoped_lock lock(state->mutex);
    state->owner.reset();
    dropped.swap(state->ended);
    if (!isDone)
        static_cast<void>(state->thread.release());
}

void ThreadWorkQueue::run(std::function<void()> work, std::function<void()> done) {
    ++state->pending;
    state->thread->start([state = state, work = std::move(work), done = std::move(done)]() mutable {
        work();
        // What the work holds is released before its end is known.
        work = nullptr;
        const std::scoped_lock lock(state->mutex);
        if (!state->owner)
            return;
        state->ended.push_back(std::move(done));
        const auto callDone = [weak = std::weak_ptr(state)] {
            if (const auto alive = weak.lock())
                alive->callDone();
        };
        QMetaObject::invokeMethod(state->owner.get(), callDone, Qt::QueuedConnection);
    });
}

bool ThreadWorkQueue::finish(std::chrono::milliseconds limit) {
    const QDeadlineTimer deadline(limit);
    const std::shared_ptr<State> held = state;
    while (held->pending > 0) {
        if (!held->thread->waitForDone(int(deadline.remainingTime())))
            return false;
        held->callDone();
    }
    return true;
}

} // namespace ellwynd
