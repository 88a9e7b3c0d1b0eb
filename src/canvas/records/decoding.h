// Canvas's JSON into records.
#pragma once

#include "canvas/records/records.h"

#include <stdexcept>
#include <string>

namespace ellwynd {

/// A response that could not be decoded. The message says which record of the list, which key and
/// what was wrong, or at which byte the text stops being JSON; it quotes no value, so it can be
/// logged.
class DecodingError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// How deep a Canvas response may nest.
inline constexpr std::size_t maxNesting = 64;

// Each takes the whole text of a response and returns every record in it, or throws a
// DecodingError: for text that is no JSON or is cut short, nesting past `maxNesting`, a
// required key that is missing or null, any key of the wrong type, a date that is no ISO 8601
// instant and a number that is not finite. Unknown keys are ignored; of a key given twice the last
// counts.
//
// A string with 64 bytes of spare capacity spares a copy.
[[nodiscard]] std::vector<Course> decodeCourses(const std::string &json);
[[nodiscard]] std::vector<Enrollment> decodeEnrollments(const std::string &json);
[[nodiscard]] std::vector<AssignmentGroup> decodeAssignmentGroups(const std::string &json);
[[nodiscard]] std::vector<SubmissionSummary> decodeSubmissions(const std::string &json);

/// One course by itself rather than a list.
[[nodiscard]] Course decodeCourse(const std::string &json);

[[nodiscard]] CanvasUser decodeUser(const std::string &json);

} // namespace ellwynd
