// Helpers for coroutine tasks: detaching, sleeping, and cancellation.
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

/// Lets a task run to its end without being awaited. Its exception is logged unless it is
/// Cancelled.
/// @param what begins the log line: "The scoring pass".
void detach(QCoro::Task<> task, std::string what);

/// Waits for `duration`. @throws Cancelled as soon as a stop is requested.
[[nodiscard]] QCoro::Task<> sleepFor(std::chrono::milliseconds duration, std::stop_token stop);

} // namespace ellwynd
