// Tasks that nobody awaits.
#pragma once

#include "base/log.h"

#include <QCoro/QCoroTask>

#include <fmt/format.h>

#include <exception>
#include <string>

namespace ellwynd {

inline QCoro::Task<> detach(QCoro::Task<> task, std::string what) {
    try {
        co_await task;
    } catch (const std::exception &error) {
        Log("network").error(fmt::format("{} failed: {}", what, error.what()));
    } catch (...) {
        Log("network").error(fmt::format("{} failed", what));
    }
}

} // namespace ellwynd
