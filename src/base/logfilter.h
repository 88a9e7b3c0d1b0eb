// Which lines of the log are written, by category and level.
#pragma once

#include "base/log.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace ellwynd {

/// One rule for each category, and one for the others.
class LogFilter {
  public:
    /// Allows everything.
    LogFilter() = default;

    /// Reads rules such as "network,sync:error" or "*:error,notify:off": categories, each with the
    /// lowest level that is written ("info", which is also the default, "error", or "off" for
    /// none), separated by commas. "*" names all other categories; without it they are off. An
    /// empty text allows everything. Absent for a text that makes no sense.
    [[nodiscard]] static std::optional<LogFilter> parse(std::string_view text);

    [[nodiscard]] bool allows(std::string_view category, Log::Level level) const;

  private:
    enum class Rule { info, error, off };

    [[nodiscard]] static std::optional<Rule> ruleOf(std::string_view word);

    std::map<std::string, Rule, std::less<>> rules;
    Rule others = Rule::info;
};

} // namespace ellwynd
