#include "cli/session.h"

#include "app/connection.h"
#include "canvas/runtoend.h"

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd::cli {

Session::Session(
    std::istream &input, std::ostream &results, std::ostream &messages,
    std::filesystem::path preferences, PreferenceMap launchArguments)
    : out(results),
      err(messages),
      in(input),
      file(std::move(preferences)),
      arguments(std::move(launchArguments)) {}

UserDefaults &Session::defaults() {
    if (!opened)
        opened = std::make_unique<UserDefaults>(file, arguments);
    return *opened;
}

std::shared_ptr<CanvasReading> Session::connect() {
    auto source = Connector(defaults(), secretStore, canvasSession).open();
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
