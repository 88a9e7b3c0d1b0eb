// A course's setup taken over from an earlier edition of it.
#pragma once

#include "canvas/records/termgroups.h"
#include "preferences/coursesettings.h"

namespace ellwynd {

/// What a course has set of its own. What is absent follows the defaults.
struct CourseSetup {
    /// Percent.
    std::optional<double> passingScore;
    /// Whole days behind the class.
    std::optional<std::int64_t> inactivityDays;
    CourseIcon icon;

    bool operator==(const CourseSetup &) const = default;
};

/// The setup as it is in effect: a value of the wrong type and a word that the program does not
/// know count as not set.
[[nodiscard]] CourseSetup courseSetup(const UserDefaults &, std::int64_t courseID);

/// "Passing score 65%, 10 inactivity days, icon, colour"; empty when nothing is set.
[[nodiscard]] std::string setupText(const CourseSetup &);

/// The sentence below a course that may be copied from.
[[nodiscard]] std::string setupSummary(const CourseSetup &);

/// The courses that a course's setup can be copied from.
struct SetupCandidates {
    /// Newest term first, the courses without a term last.
    std::vector<TermGroup> terms;
    /// The likely earlier edition; absent when none looks like one.
    std::optional<std::int64_t> suggested;

    bool operator==(const SetupCandidates &) const = default;
};

/// Every course of an earlier term than the course's own. A term is earlier unless its dates say
/// otherwise: where one of the two has no start nobody can tell, and it is offered.
///
/// The suggestion is the newest course with the same course code apart from section numbers, or
/// else the newest whose name begins with the same subject and number.
/// @param courseID a course that is not in the list has no candidates.
[[nodiscard]] SetupCandidates
setupCandidates(const std::vector<Course> &courses, std::int64_t courseID);

/// What of a course code stays the same from section to section and from term to term: "CS 101" of
/// "cs101-4021". A code without a subject and a number is kept whole, apart from case and spaces;
/// empty for an empty code.
[[nodiscard]] std::string editionOf(std::string_view courseCode);

/// The subject and number that a name begins with, "CS 101" of "CS 101  4021 - Intro"; empty when
/// it does not begin so.
[[nodiscard]] std::string subjectAndNumber(std::string_view courseName);

/// Gives one course what another has set, in one change. What the other has not set stays as it is.
/// @return what takes the change back when it is handed to `UserDefaults::update`.
PreferenceChanges
copyCourseSetup(UserDefaults &, std::int64_t fromCourseID, std::int64_t toCourseID);

} // namespace ellwynd
