// An application that measures how long the main thread takes to handle each event.
#pragma once

#include <QCoreApplication>
#include <QThread>

#include <algorithm>
#include <chrono>

namespace ellwynd::bench {

/// @tparam Base QCoreApplication or a class derived from it.
template<class Base>
class MeasuredApplication : public Base {
  public:
    using Base::Base;

    /// The longest time for which the main thread did not return to its event loop, in
    /// milliseconds, since this was last called.
    static double takeLongestStep() {
        return std::chrono::duration<double, std::milli>(std::exchange(longestStep, {})).count();
    }

    bool notify(QObject *receiver, QEvent *event) override {
        // Nested events are part of the outermost one.
        if (inside)
            return Base::notify(receiver, event);
        inside = true;
        const auto begin = std::chrono::steady_clock::now();
        const bool result = Base::notify(receiver, event);
        if (measuredThread == QThread::currentThread())
            longestStep = std::max(longestStep, std::chrono::steady_clock::now() - begin);
        inside = false;
        return result;
    }

  private:
    static inline std::chrono::steady_clock::duration longestStep{};
    static inline thread_local bool inside = false;
    QThread *measuredThread = QThread::currentThread();
};

} // namespace ellwynd::bench
