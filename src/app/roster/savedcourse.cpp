#include "app/roster/savedcourse.h"

#include "base/files.h"
#include "canvas/client/errorbody.h"
#include "canvas/records/decoding.h"

namespace ellwynd {

namespace {

constexpr std::size_t fileLimit = 64UL * 1024 * 1024;

template<class Decode>
auto readFrom(const std::filesystem::path &folder, const char *name, Decode decode) {
    const auto json = files::read(folder / name, fileLimit);
    if (!json)
        throw FileError(std::string(name) + " is missing from " + folder.string() + ".");
    try {
        return decode(*json);
    } catch (const DecodingError &error) {
        if (looksLikeHTML(*json))
            throw FileError(std::string(name) + " contains a web page instead of Canvas JSON.");
        throw FileError(std::string(name) + " couldn’t be read: " + error.what() + ".");
    }
}

} // namespace

ScoredCourse scoreSavedCourse(
    const std::filesystem::path &folder, const CourseThresholds &thresholds, Date now) {
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error))
        throw FileError("There is no folder " + folder.string() + ".");
    auto course = readFrom(folder, "course.json", decodeCourse);
    auto enrollments = readFrom(folder, "enrollments.json", decodeEnrollments);
    const auto groups = readFrom(folder, "assignment_groups.json", decodeAssignmentGroups);
    auto submissions = readFrom(folder, "submissions.json", decodeSubmissions);
    return scoreCourse(
        std::move(course), std::move(enrollments), groups, std::move(submissions), thresholds, now);
}

} // namespace ellwynd
