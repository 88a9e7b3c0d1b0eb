// The two thresholds of the scorer: defaults, and overrides for single courses.
#pragma once

#include "preferences/coursesettings.h"

#include <string>

namespace ellwynd {

/// The thresholds that a course is scored with.
struct CourseThresholds {
    /// Percent.
    double passingScore = 70;
    /// Whole days behind the class.
    std::int64_t inactivityDays = 7;
    bool passingOverridden = false;
    bool inactivityOverridden = false;

    bool operator==(const CourseThresholds &) const = default;
    [[nodiscard]] bool anyOverridden() const { return passingOverridden || inactivityOverridden; }
};

/// The current thresholds of a course: its overrides, else the defaults.
[[nodiscard]] CourseThresholds courseThresholds(const UserDefaults &, std::int64_t courseID);

/// The thresholds of a course without overrides.
[[nodiscard]] CourseThresholds defaultThresholds(const UserDefaults &);

/// Whether a change of the preference changes the thresholds of courses.
[[nodiscard]] bool isThresholdKey(std::string_view key);

/// Removes both overrides of a course, in one write of the file.
/// @return the previous values of those that were set, for `UserDefaults::update`.
PreferenceChanges useDefaults(UserDefaults &, std::int64_t courseID);

/// "Scored at 70% passing, 7 days behind the class. Following the defaults from Settings."
[[nodiscard]] std::string thresholdsSummary(const CourseThresholds &);

} // namespace ellwynd
