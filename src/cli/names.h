// Courses and students named on the command line.
#pragma once

#include "app/roster/rosterloader.h"
#include "cli/commandcontext.h"

#include <span>
#include <string>
#include <vector>

namespace ellwynd::cli {

/// A course or a student as given on the command line.
struct Reference {
    /// Absent if a name was given.
    std::optional<std::int64_t> id;
    /// As given.
    std::string word;
};

/// A name that several courses or students have.
class AmbiguousName : public UsageError {
  public:
    /// @param lines one for each of them.
    explicit AmbiguousName(const std::vector<std::string> &lines);
};

/// Reads an id, or a text with a letter or a digit as a name.
/// @param what names the kind in the message, such as "course".
/// @throws UsageError for any other text
[[nodiscard]] Reference parseReference(const std::string &word, const char *what);

/// The course with that id, name or code. Names and codes are compared as a whole first, then by
/// the beginnings of their words, without regard to letter case and accents.
/// @throws Failure when it is not in the list, AmbiguousName
[[nodiscard]] Course findCourse(const std::vector<Course> &courses, const Reference &reference);

/// Fetches the course list, then fetches and scores that course; its notes go to standard error.
/// @throws Failure, AmbiguousName, NotConnected, KeychainError, CanvasError
[[nodiscard]] ScoredCourse loadCourse(CommandContext &context, const Reference &reference);

/// Fetches and scores these courses at once; their notes go to standard error.
/// @throws KeychainError, CanvasError
[[nodiscard]] std::vector<ScoredCourse> loadCourses(
    CommandContext &context, const std::shared_ptr<CanvasReading> &source,
    const std::vector<Course> &courses);

/// The row of the student with that id or name, compared in the same way. Valid as long as the
/// course. @throws Failure when it is not in the roster, AmbiguousName
[[nodiscard]] const RiskRow &findStudent(const ScoredCourse &course, const Reference &reference);

} // namespace ellwynd::cli
