// An application that measures how long the main thread takes to handle each event.
#pragma once

#include <QCoreApplication>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <string>
#include <utility>

namespace ellwynd::bench {

/// One event that the main thread handled, with everything that it caused before the thread
/// returned to its event loop.
struct Step {
    /// In milliseconds.
    double wall = 0;
    /// The processor time of the main thread, in milliseconds. It does not grow while other
    /// programs use the processor.
    double processor = 0;
    /// The class of the event's receiver, and the type of the event.
    std::string what;
};

/// The processor time that the calling thread has used.
inline std::chrono::nanoseconds threadTime() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// @tparam Base QCoreApplication or a class derived from it.
template<class Base>
class MeasuredApplication : public Base {
  public:
    using Base::Base;

    /// The longest time for which the main thread did not return to its event loop, in
    /// milliseconds, since this or `takeLongest` was last called.
    static double takeLongestStep() {
        const double wall = longestWall;
        takeLongest();
        return wall;
    }

    /// The step with the most processor time since then; its wall time is that of the step with the
    /// most wall time.
    static Step takeLongest() {
        Step step = std::exchange(longest, {});
        step.wall = std::exchange(longestWall, 0);
        return step;
    }

    /// The step that is handled now is reported by `takeNamed` too.
    static void nameStep() { naming = true; }
    static Step takeNamed() { return std::exchange(named, {}); }

    bool notify(QObject *receiver, QEvent *event) override {
        // Nested events are part of the outermost one.
        if (inside || measuredThread != QThread::currentThread())
            return Base::notify(receiver, event);
        inside = true;
        // The receiver may be destroyed by the event.
        const char *name = receiver->metaObject()->className();
        const int type = event->type();
        const auto begin = std::chrono::steady_clock::now();
        const auto beginTime = threadTime();
        const bool result = Base::notify(receiver, event);
        using Milliseconds = std::chrono::duration<double, std::milli>;
        const double processor = Milliseconds(threadTime() - beginTime).count();
        const double wall = Milliseconds(std::chrono::steady_clock::now() - begin).count();
        longestWall = std::max(longestWall, wall);
        if (processor > longest.processor)
            longest = {wall, processor, std::string(name) + " " + std::to_string(type)};
        if (std::exchange(naming, false))
            named = {wall, processor, name};
        inside = false;
        return result;
    }

  private:
    static inline Step longest;
    static inline double longestWall = 0;
    static inline Step named;
    static inline bool naming = false;
    static inline bool inside = false;
    QThread *measuredThread = QThread::currentThread();
};

} // namespace ellwynd::bench
