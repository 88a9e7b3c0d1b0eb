#include "base/logfilter.h"

#include "base/text.h"

namespace ellwynd {

std::optional<LogFilter::Rule> LogFilter::ruleOf(std::string_view word) {
    if (word == "info")
        return Rule::info;
    if (word == "error")
        return Rule::error;
    if (word == "off")
        return Rule::off;
    return std::nullopt;
}

std::optional<LogFilter> LogFilter::parse(std::string_view text) {
    LogFilter filter;
    if (trim(text).empty())
        return filter;
    filter.others = Rule::off;
    for (std::string_view rest = text; !rest.empty();) {
        const auto comma = rest.find(',');
        const std::string_view item = rest.substr(0, comma);
        rest = comma != rest.npos ? rest.substr(comma + 1) : std::string_view();
        const auto colon = item.find(':');
        const std::string_view category = trim(item.substr(0, colon));
        const auto rule = colon != item.npos ? ruleOf(trim(item.substr(colon + 1))) : Rule::info;
        if (category.empty() || !rule)
            return std::nullopt;
        if (category == "*")
            filter.others = *rule;
        else
            filter.rules.insert_or_assign(std::string(category), *rule);
    }
    return filter;
}

bool LogFilter::allows(std::string_view category, Log::Level level) const {
    const auto found = rules.find(category);
    switch (found != rules.end() ? found->second : others) {
    case Rule::info:
        return true;
    case Rule::error:
        return level == Log::Level::error;
    case Rule::off:
        break;
    }
    return false;
}

} // namespace ellwynd
