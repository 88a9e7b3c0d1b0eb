#include "outputs/snapshot/widgettexts.h"

#include "base/calendar.h"
#include "base/text.h"

#include <algorithm>
#include <numeric>
#include <tuple>

namespace ellwynd {

namespace {

using Courses = std::vector<WidgetCourseSummary>;

std::int64_t flaggedOf(const WidgetCourseSummary &course) {
    return course.atRisk + course.concern + course.watch;
}

std::string attentionText(std::int64_t count) {
    return std::string(pluralForm(count, "student needs attention", "students need attention"));
}

std::array<WidgetLevelCount, 3> levelCounts(const WidgetCourseSummary &course) {
    return {
        {{WidgetLevel::atRisk, course.atRisk},
         {WidgetLevel::concern, course.concern},
         {WidgetLevel::watch, course.watch}}};
}

WidgetRow rowOf(const WidgetCourseSummary &course, std::size_t position) {
    WidgetRow row{
        .courseID = course.id,
        .label = course.name ? oneLine(*course.name) : "Course " + std::to_string(position),
        .nameHidden = !course.name,
        .link = "ellwynd://course/" + std::to_string(course.id)};
    for (const WidgetLevelCount &count : levelCounts(course)) {
        if (count.count > 0)
            row.levels.push_back(count);
    }
    row.summary = row.levels.empty() ? "All OK" : std::to_string(flaggedOf(course)) + " flagged";
    row.accessibleText = row.label + ", " + row.summary;
    for (const WidgetLevelCount &count : row.levels)
        row.accessibleText += ", " + levelCountText(count);
    return row;
}

/// The indices of the courses to show, ascending.
std::vector<std::size_t> shownIndices(const Courses &courses, std::size_t maxRows) {
    std::vector<std::size_t> indices(courses.size());
    std::iota(indices.begin(), indices.end(), 0);
    if (indices.size() <= maxRows)
        return indices;
    const auto severity = [&](std::size_t index) {
        const WidgetCourseSummary &course = courses[index];
        return std::tuple(course.atRisk, course.concern, course.watch);
    };
    std::ranges::stable_sort(indices, std::greater{}, severity);
    indices.resize(maxRows);
    std::ranges::sort(indices);
    return indices;
}

} // namespace

std::vector<WidgetTermEntity> widgetTermQuery(const std::optional<WidgetSnapshotFile> &file) {
    std::vector<WidgetTermEntity> entities{{.title = "Automatic"}};
    if (file) {
        for (const WidgetTermSummary &term : file->terms)
            entities.push_back({.id = term.id, .title = oneLine(term.title)});
    }
    return entities;
}

const WidgetTermSummary *
shownTerm(const WidgetSnapshotFile &file, const std::optional<std::int64_t> &chosen) {
    const WidgetTermSummary *term = chosen ? findTerm(file, *chosen) : nullptr;
    return term != nullptr ? term : findTerm(file, file.automaticTermID);
}

std::string_view widgetLevelName(WidgetLevel level) {
    switch (level) {
    case WidgetLevel::atRisk:
        return "At Risk";
    case WidgetLevel::concern:
        return "Concern";
    case WidgetLevel::watch:
        break;
    }
    return "Watch";
}

std::string levelCountText(const WidgetLevelCount &count) {
    return std::to_string(count.count) + " " + std::string(widgetLevelName(count.level));
}

std::string asOfText(Date updatedAt, Date now) {
    const std::string time = calendar::shortTime(updatedAt);
    if (calendar::daysBetween(updatedAt, now) == 0)
        return "as of " + time;
    return "as of " + calendar::shortDay(updatedAt, now) + ", " + time;
}

WidgetContent widgetContent(
    const std::optional<WidgetSnapshotFile> &file, const std::optional<std::int64_t> &chosen,
    std::size_t maxRows, Date now) {
    const WidgetTermSummary *term = file ? shownTerm(*file, chosen) : nullptr;
    if (term == nullptr)
        return {.message = "Open Ellwynd to load your courses"};

    WidgetCourseSummary sum;
    for (const WidgetCourseSummary &course : term->courses) {
        sum.atRisk += course.atRisk;
        sum.concern += course.concern;
        sum.watch += course.watch;
    }
    WidgetContent content{
        .title = oneLine(term->title),
        .flagged = flaggedOf(sum),
        .attention = attentionText(flaggedOf(sum)),
        .levels = levelCounts(sum),
        .asOf = asOfText(file->updatedAt, now)};
    content.headline =
        std::to_string(content.flagged) + " " + content.attention + " in " + content.title;
    for (const std::size_t index : shownIndices(term->courses, maxRows))
        content.rows.push_back(rowOf(term->courses[index], index + 1));
    const std::size_t hidden = term->courses.size() - content.rows.size();
    if (hidden > 0)
        content.more = std::to_string(hidden) + " more in Ellwynd";
    return content;
}

} // namespace ellwynd
