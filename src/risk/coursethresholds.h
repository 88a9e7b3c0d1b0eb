// The two numbers that steer the scorer: a default for every course, an override for any one.
#pragma once

#include "preferences/coursesettings.h"

#include <string>

namespace ellwynd {

/// What one course is scored with.
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

/// The thresholds of a course now: nothing of the defaults is copied to a course, so one without an
/// override moves with them.
[[nodiscard]] CourseThresholds courseThresholds(const UserDefaults &, std::int64_t courseID);

/// Puts a course back to following both defaults.
void useDefaults(UserDefaults &, std::int64_t courseID);

/// "Scored at 70% passing, 7 days behind the class. Following the defaults from Settings."
[[nodiscard]] std::string thresholdsSummary(const CourseThresholds &);

} // namespace ellwynd
