// Copies a course's own settings from an earlier edition of the course.
#pragma once

#include "canvas/records/termgroups.h"
#include "preferences/coursesettings.h"

namespace ellwynd {

/// The settings of one course. Absent or empty values follow the defaults.
struct CourseSetup {
    /// Percent.
    std::optional<double> passingScore;
    /// Whole days behind the class.
    std::optional<std::int64_t> inactivityDays;
    CourseIcon icon;

    bool operator==(const CourseSetup &) const = default;
};

/// The effective setup: values of the wrong type and unknown icons or colours count as not set.
[[nodiscard]] CourseSetup courseSetup(const UserDefaults &, std::int64_t courseID);

/// "Passing score 65%, 10 inactivity days, icon, colour"; empty when nothing is set.
[[nodiscard]] std::string setupText(const CourseSetup &);

/// The text below a course that can be copied from.
[[nodiscard]] std::string setupSummary(const CourseSetup &);

/// The courses that a course's setup can be copied from.
struct SetupCandidates {
    /// Newest term first, the courses without a term last.
    std::vector<TermGroup> terms;
    /// The likely earlier edition; absent if no course looks like one.
    std::optional<std::int64_t> suggested;

    bool operator==(const SetupCandidates &) const = default;
};

/// The courses of earlier terms, and those whose order in time is unknown: terms are compared by
/// their starts, two terms without a start by their ids, and any other pair counts as earlier.
///
/// The suggestion is the newest course with the same course code apart from section numbers, or
/// else the newest whose name begins with the same subject and number.
/// @param courseID without candidates if it is not in the list.
[[nodiscard]] SetupCandidates
setupCandidates(const std::vector<Course> &courses, std::int64_t courseID);

/// The part of a course code that is the same in all sections and terms: "CS 101" of "cs101-4021".
/// A code without a subject and a number is returned whole, in capitals and with spaces simplified.
[[nodiscard]] std::string editionOf(std::string_view courseCode);

/// The subject and number at the start of a course name: "CS 101" of "CS 101  4021 - Intro"; empty
/// if there are none.
[[nodiscard]] std::string subjectAndNumber(std::string_view courseName);

/// Copies the settings of one course to another in one change. Settings that the first does not
/// have are left as they are.
/// @return the changes that undo the copy, for `UserDefaults::update`.
PreferenceChanges
copyCourseSetup(UserDefaults &, std::int64_t fromCourseID, std::int64_t toCourseID);

} // namespace ellwynd
