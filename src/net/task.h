// Tasks: one that nobody awaits, one that waits, and how one ends when it is told to stop.
#pragma once

#include <QCoro/QCoroTask>

#include <chrono>
#include <exception>
#include <stop_token>
#include <string>

namespace ellwynd {

/// The caller no longer wants the result; nothing has failed.
class Cancelled : public std::exception {
  public:
    [[nodiscard]] const char *what() const noexcept override { return "cancelled"; }
};

/// Lets a task that nobody awaits run to its end. What escapes it is logged; a cancellation is not.
/// @param what begins the log line: "The scoring pass".
void detach(QCoro::Task<> task, std::string what);

/// Waits. @throws Cancelled as soon as a stop is requested.
[[nodiscard]] QCoro::Task<> sleepFor(std::chrono::milliseconds duration, std::stop_token stop);

} // namespace ellwynd
