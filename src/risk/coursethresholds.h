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

/// What the editors accept. The scorer itself takes any value.
namespace thresholdBounds {
inline constexpr double minimumPassing = 0;
inline constexpr double maximumPassing = 100;
inline constexpr double passingStep = 0.5;
inline constexpr std::int64_t minimumDays = 1;
inline constexpr std::int64_t maximumDays = 60;
} // namespace thresholdBounds

} // namespace ellwynd
