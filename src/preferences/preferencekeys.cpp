#include "preferences/preferencekeys.h"

#include <fmt/format.h>

#include <charconv>

namespace ellwynd {

namespace {

template<class T>
void add(PreferenceMap &map, const PreferenceKey<T> &key) {
    if constexpr (std::is_same_v<T, std::string>) {
        if (!key.fallback.empty())
            map.emplace(key.name, std::string(key.fallback));
    } else {
        map.emplace(key.name, key.fallback);
    }
}

template<class Number>
std::optional<Number> parseWhole(std::string_view word) {
    Number number{};
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error != std::errc{} || end != word.data() + word.size())
        return std::nullopt;
    return number;
}

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            result += '\\', result += c;
        else if (static_cast<unsigned char>(c) < 0x20)
            result += fmt::format("\\u{:04x}", int(c));
        else
            result += c;
    }
    return result + '"';
}

} // namespace

PreferenceMap preferences::registeredDefaults() {
    PreferenceMap map;
    const auto addAll = [&map](const auto &...keys) { (add(map, keys), ...); };
    addAll(
        canvasBaseURL, sampleData, sampleWidgets, sampleNotifications, defaultPassingScore,
        defaultInactivityDays, appearance, accentTheme, textScale, rosterCompactRows,
        sidebarTermLimit, studentDetailsHidden, rememberContacts, rememberRosterHistory,
        dashboardTermID, widgetsHideCourseNames, movementNotifications, notifyWhileActive,
        syncSettings, automaticUpdateChecks, onboardingStep, courseInsightPanelMode);
    return map;
}

PreferenceValue parsePreferenceValue(std::string_view word) {
    if (word == "YES" || word == "true")
        return true;
    if (word == "NO" || word == "false")
        return false;
    if (const auto integer = parseWhole<std::int64_t>(word))
        return *integer;
    if (const auto real = parseWhole<double>(word); real && std::isfinite(*real))
        return *real;
    return std::string(word);
}

std::string toJSON(const PreferenceValue &value) {
    struct Writer {
        std::string operator()(bool v) const { return v ? "true" : "false"; }
        std::string operator()(std::int64_t v) const { return fmt::to_string(v); }
        std::string operator()(double v) const {
            std::string text = fmt::format("{}", v);
            if (text.find_first_of(".e") == std::string::npos)
                text += ".0";
            return text;
        }
        std::string operator()(const std::string &v) const { return quoted(v); }
        std::string operator()(const IDList &v) const {
            return fmt::format("[{}]", fmt::join(v, ","));
        }
    };
    return std::visit(Writer{}, value);
}

} // namespace ellwynd
