// The two numbers that steer the scorer: a default for every course, an override for any one.
#pragma once

#include "platform/userdefaults.h"

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

namespace courseSettings {

inline constexpr std::string_view prefix = "Course.";
inline constexpr std::string_view passingScore = "PassingScore";
inline constexpr std::string_view inactivityDays = "InactivityDays";

/// "Course.4021.PassingScore".
[[nodiscard]] std::string key(std::int64_t courseID, std::string_view suffix);

/// Whether the course holds a value of its own.
[[nodiscard]] bool has(const UserDefaults &, std::int64_t courseID, std::string_view suffix);

/// Writes a course's own value; an absent one is removed, and the course follows the default.
void set(
    UserDefaults &, std::int64_t courseID, std::string_view suffix,
    std::optional<PreferenceValue> value);

} // namespace courseSettings

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
