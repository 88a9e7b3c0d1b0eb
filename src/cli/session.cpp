#include "cli/session.h"

#include "app/connection.h"
#include "canvas/runtoend.h"

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd::cli {

std::shared_ptr<CanvasReading> Session::connect() const {
    auto source = openConnection(defaults);
    if (!source)
        throw NotConnected();
    return source;
}

std::vector<Course> fetchCourses(CanvasReading &source) {
    return runToEnd(source.fetchCourses());
}

Course findCourse(const std::vector<Course> &courses, std::int64_t id) {
    const auto found = std::ranges::find(courses, id, &Course::id);
    if (found == courses.end())
        throw Failure(fmt::format("The course list holds no course {}.", id));
    return *found;
}

std::int64_t parseID(const std::string &word, const char *what) {
    const PreferenceValue value = parsePreferenceValue(word);
    const auto *id = std::get_if<std::int64_t>(&value);
    if (id == nullptr)
        throw UsageError(fmt::format("{} is no {} id", word, what));
    return *id;
}

} // namespace ellwynd::cli
