// A course saved as Canvas JSON in a folder.
#pragma once

#include "app/roster/rosterloader.h"

#include <filesystem>

namespace ellwynd {

/// Reads "course.json", "enrollments.json", "assignment_groups.json" and "submissions.json", as
/// Canvas sends them, and scores them as a fetched course is. Touches no store.
/// @throws FileError with one sentence that names the file, for any of them that is missing, larger
///         than 64 MiB or not what Canvas sends.
[[nodiscard]] ScoredCourse
scoreSavedCourse(const std::filesystem::path &folder, const CourseThresholds &thresholds, Date now);

} // namespace ellwynd
