// Which lines of the log are written, by category and level.
#pragma once

#include "base/log.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace ellwynd {

/// A rule for each named category, and one for all others.
class LogFilter {
  public:
    /// Allows everything.
    LogFilter() = default;

    /// Parses comma-separated rules such as "network,sync:error" or "*:error,notify:off": a
    /// category and the lowest level that is written, which is "info" (the default), "error", or
    /// "off" for none. "*" means all other categories; without it they are off. An empty text
    /// allows everything. Absent for a text that is not valid.
    [[nodiscard]] static std::optional<LogFilter> parse(std::string_view text);

    [[nodiscard]] bool allows(std::string_view category, Log::Level level) const;

  private:
    enum class Rule { info, error, off };

    [[nodiscard]] static std::optional<Rule> ruleOf(std::string_view word);

    std::map<std::string, Rule, std::less<>> rules;
    Rule others = Rule::info;
};

} // namespace ellwynd
