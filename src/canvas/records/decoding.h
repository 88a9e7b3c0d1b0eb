// Decodes Canvas's JSON into records.
#pragma once

#include "canvas/records/records.h"

#include <stdexcept>
#include <string>

namespace ellwynd {

/// A response that could not be decoded. The message names the record's index, the key and the
/// problem, or the byte at which the text is not valid JSON. It quotes no values, so it can be
/// logged.
class DecodingError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The maximum nesting depth of a Canvas response.
inline constexpr std::size_t maxNesting = 64;

// Each function decodes the body of a response. It throws a DecodingError for text that is not
// valid JSON, for nesting beyond `maxNesting`, for a required key that is missing or null, for a
// value of the wrong type, for a date that is not an ISO 8601 instant, and for a number that is not
// finite. Unknown keys are ignored; the last value of a repeated key counts.
//
// A string with 64 bytes of spare capacity is parsed without a copy.
[[nodiscard]] std::vector<Course> decodeCourses(const std::string &json);
[[nodiscard]] std::vector<Enrollment> decodeEnrollments(const std::string &json);
[[nodiscard]] std::vector<AssignmentGroup> decodeAssignmentGroups(const std::string &json);
[[nodiscard]] std::vector<SubmissionSummary> decodeSubmissions(const std::string &json);

/// A single course rather than a list.
[[nodiscard]] Course decodeCourse(const std::string &json);

[[nodiscard]] CanvasUser decodeUser(const std::string &json);

} // namespace ellwynd
