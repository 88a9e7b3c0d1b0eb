#include "app/shell/settings.h"

#include "risk/coursethresholds.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <span>

namespace ellwynd {

namespace {

using preferences::accentTheme;
using preferences::appearance;

/// The value as the key's type, within its limits.
template<class T>
T checked(std::string_view key, const PreferenceValue &value, std::string_view takes) {
    const auto result = valueAs<T>(value);
    if (!result)
        throw InvalidSetting(fmt::format("{} takes {}", key, takes));
    return *result;
}

template<class T>
T within(std::string_view key, const PreferenceValue &value, T lowest, T highest) {
    const std::string takes = fmt::format(
        "{} from {} to {}", std::is_same_v<T, double> ? "a number" : "a whole number", lowest,
        highest);
    const T number = checked<T>(key, value, takes);
    if (!(number >= lowest && number <= highest))
        throw InvalidSetting(fmt::format("{} takes {}", key, takes));
    return number;
}

std::string oneOf(
    std::string_view key, const PreferenceValue &value, std::span<const std::string_view> choices) {
    const std::string takes = fmt::format("one of {}", fmt::join(choices, ", "));
    auto choice = checked<std::string>(key, value, takes);
    if (std::ranges::find(choices, choice) == choices.end())
        throw InvalidSetting(fmt::format("{} takes {}", key, takes));
    return choice;
}

bool isFlag(std::string_view key) {
    using namespace preferences;
    const auto flags = {
        sampleData.name,
        sampleWidgets.name,
        sampleNotifications.name,
        rosterCompactRows.name,
        rememberContacts.name,
        rememberRosterHistory.name,
        widgetsHideCourseNames.name,
        movementNotifications.name,
        notifyWhileActive.name,
        automaticUpdateChecks.name,
        syncSettings.name};
    return std::ranges::find(flags, key) != flags.end();
}

} // namespace

void writeSetting(UserDefaults &defaults, const std::string &key, PreferenceValue value) {
    using namespace preferences;
    using namespace thresholdBounds;
    static constexpr std::array<std::string_view, 3> appearances{"automatic", "light", "dark"};
    static constexpr std::array<std::string_view, 7> accents{"system", "blue", "indigo",  "purple",
                                                             "teal",   "pink", "graphite"};
    const std::string_view suffix = courseSettings::suffixOf(key);
    if (key == defaultPassingScore.name || suffix == courseSettings::passingScore)
        value = within<double>(key, value, minimumPassing, maximumPassing);
    else if (key == defaultInactivityDays.name || suffix == courseSettings::inactivityDays)
        value = within<std::int64_t>(key, value, minimumDays, maximumDays);
    else if (key == textScale.name)
        value = textScale.normalise(checked<double>(key, value, "a number"));
    else if (key == sidebarTermLimit.name)
        value = sidebarTermLimit.normalise(checked<std::int64_t>(key, value, "a whole number"));
    else if (key == appearance.name)
        value = oneOf(key, value, appearances);
    else if (key == accentTheme.name)
        value = oneOf(key, value, accents);
    else if (suffix == courseSettings::icon)
        value = oneOf(key, value, courseSettings::iconWords);
    else if (suffix == courseSettings::iconColor)
        value = oneOf(key, value, courseSettings::colorWords);
    else if (isFlag(key))
        value = checked<bool>(key, value, "YES or NO");
    defaults.set(key, std::move(value));
}

Settings::Settings(UserDefaults &defaults)
    : store(defaults), observing(defaults.observe([this](std::string_view key) {
          if (key == preferences::appearance.name)
              Q_EMIT appearanceDidChange();
          else if (key == preferences::accentTheme.name)
              Q_EMIT accentThemeDidChange();
          else if (key == preferences::textScale.name)
              Q_EMIT textScaleDidChange();
          else if (key == preferences::sidebarTermLimit.name)
              Q_EMIT termLimitDidChange();
      })) {}

void Settings::setTextScale(double scale) {
    scale = preferences::textScale.normalise(scale);
    if (scale != store.value(preferences::textScale))
        store.set(preferences::textScale, scale);
}

} // namespace ellwynd
