#include "risk/coursethresholds.h"

#include "risk/reasons.h"

namespace ellwynd {

namespace {

/// The course's override; absent for none and for a value of another type.
template<class T>
std::optional<T>
overrideOf(const UserDefaults &defaults, std::int64_t courseID, std::string_view suffix) {
    const auto stored = defaults.object(courseSettings::key(courseID, suffix));
    return stored ? valueAs<T>(*stored) : std::nullopt;
}

} // namespace

CourseThresholds courseThresholds(const UserDefaults &defaults, std::int64_t courseID) {
    const auto passing = overrideOf<double>(defaults, courseID, courseSettings::passingScore);
    const auto days = overrideOf<std::int64_t>(defaults, courseID, courseSettings::inactivityDays);
    return {
        .passingScore = passing.value_or(defaults.value(preferences::defaultPassingScore)),
        .inactivityDays = days.value_or(defaults.value(preferences::defaultInactivityDays)),
        .passingOverridden = passing.has_value(),
        .inactivityOverridden = days.has_value()};
}

CourseThresholds defaultThresholds(const UserDefaults &defaults) {
    return {
        .passingScore = defaults.value(preferences::defaultPassingScore),
        .inactivityDays = defaults.value(preferences::defaultInactivityDays)};
}

bool isThresholdKey(std::string_view key) {
    const std::string_view suffix = courseSettings::suffixOf(key);
    return key == preferences::defaultPassingScore.name ||
        key == preferences::defaultInactivityDays.name || suffix == courseSettings::passingScore ||
        suffix == courseSettings::inactivityDays;
}

PreferenceChanges useDefaults(UserDefaults &defaults, std::int64_t courseID) {
    using namespace courseSettings;
    return defaults.update(
        {{key(courseID, passingScore), std::nullopt},
         {key(courseID, inactivityDays), std::nullopt}});
}

std::string thresholdsSummary(const CourseThresholds &thresholds) {
    return "Scored at " + roundedText(thresholds.passingScore) + "% passing, " +
        std::to_string(thresholds.inactivityDays) + " days behind the class. " +
        (thresholds.anyOverridden() ? "This course overrides the defaults."
                                    : "Following the defaults from Settings.");
}

} // namespace ellwynd
