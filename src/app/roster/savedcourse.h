// A course saved as Canvas JSON in a folder.
#pragma once

#include "app/roster/rosterloader.h"

#include <filesystem>

namespace ellwynd {

/// Reads "course.json", "enrollments.json", "assignment_groups.json" and "submissions.json" in the
/// format of Canvas, and scores them like a fetched course. Reads and writes no stores.
/// @throws FileError with one sentence, if the folder does not exist, or a file is missing, larger
///         than 64 MiB or not in that format.
[[nodiscard]] ScoredCourse
scoreSavedCourse(const std::filesystem::path &folder, const CourseThresholds &thresholds, Date now);

} // namespace ellwynd
