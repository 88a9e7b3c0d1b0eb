// Captures log lines in tests.
#pragma once

#include "base/log.h"

#include <vector>

namespace ellwynd::test {

/// Collects log lines during its lifetime, as "category: message".
class LogCapture {
  public:
    LogCapture() {
        lines().clear();
        errors().clear();
        Log::setSink([](std::string_view category, Log::Level level, std::string_view message) {
            lines().push_back(std::string(category) + ": " + std::string(message));
            if (level == Log::Level::error)
                errors().push_back(lines().back());
        });
    }
    ~LogCapture() { Log::setSink(nullptr); }
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    static std::vector<std::string> &lines() {
        static std::vector<std::string> collected;
        return collected;
    }
    /// Those of errors.
    static std::vector<std::string> &errors() {
        static std::vector<std::string> collected;
        return collected;
    }
};

} // namespace ellwynd::test
