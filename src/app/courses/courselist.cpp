#include "app/courses/courselist.h"

#include "base/text.h"
#include "canvas/sample/samplecanvasclient.h"

#include <algorithm>

namespace ellwynd {

CourseList::CourseList(UserDefaults &defaults, Clock now)
    : defaults(defaults), now(now), observing(defaults.observe([this](std::string_view key) {
          if (key == preferences::sidebarTermLimit.name)
              Q_EMIT coursesDidChange();
      })) {}

void CourseList::set(std::vector<Course> courses, std::optional<CutShort> cutShort) {
    latestCourses = std::move(courses);
    latestCutShort = cutShort;
    const bool addsOlder = defaults.value(preferences::sampleData) && !latestCourses.empty();
    olderCourses = addsOlder ? SampleCanvasClient::olderCourses(now()) : std::vector<Course>();
    Q_EMIT coursesDidChange();
}

std::vector<Course> CourseList::known() const {
    std::vector<Course> courses = latestCourses;
    courses.insert(courses.end(), olderCourses.begin(), olderCourses.end());
    return courses;
}

bool CourseList::contains(std::int64_t courseID) const {
    const std::vector<Course> courses = known();
    return std::ranges::find(courses, courseID, &Course::id) != courses.end();
}

std::vector<TermGroup> CourseList::sidebarTerms() const {
    std::vector<TermGroup> terms = groupByTerm(known());
    const auto limit = std::size_t(defaults.value(preferences::sidebarTermLimit));
    if (limit > 0 && terms.size() > limit) {
        // The courses without a term do not count as a term and are always listed.
        const bool others = !terms.back().term;
        terms.erase(terms.begin() + std::ptrdiff_t(limit), terms.end() - (others ? 1 : 0));
    }
    return terms;
}

std::string CourseList::statusText() const {
    return (defaults.value(preferences::sampleData) ? "Sample college · " : "") +
        plural(std::int64_t(latestCourses.size()), "course") +
        (latestCutShort ? " · list incomplete" : "");
}

} // namespace ellwynd
