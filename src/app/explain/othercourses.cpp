#include "app/explain/othercourses.h"

#include "app/courses/courselabel.h"

#include <algorithm>

namespace ellwynd {

namespace {

std::optional<std::int64_t> termOf(const SharedCourse &course) {
    return course && course->course.term ? std::optional(course->course.term->id) : std::nullopt;
}

} // namespace

std::vector<OtherCourse> otherCourses(const RiskRow &row, const RosterCache &cache) {
    const auto ownTerm = termOf(cache.find(row.courseID));
    std::vector<OtherCourse> others;
    for (const auto &[id, course] : cache.entries) {
        const bool hasEnded = course->termEndsAt && *course->termEndsAt < course->fetchedAt;
        if (id == row.courseID || (hasEnded && termOf(course) != ownTerm))
            continue;
        const auto same = std::ranges::find(course->rows, row.id, &RiskRow::id);
        if (same != course->rows.end() && same->level)
            others.push_back(
                {.student = keyOf(*same),
                 .courseName = courseLabel(course->course).name,
                 .level = *same->level});
    }
    std::ranges::stable_sort(others, {}, [](const OtherCourse &other) {
        return std::ranges::find(allRiskLevels, other.level) - allRiskLevels.begin();
    });
    return others;
}

std::string alsoInText(const OtherCourse &other) {
    return "Also in " + other.courseName + ": " + std::string(levelName(other.level));
}

} // namespace ellwynd
