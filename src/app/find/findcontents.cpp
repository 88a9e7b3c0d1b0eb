#include "app/find/findcontents.h"

#include "app/courses/courselabel.h"
#include "app/roster/rosterview.h"
#include "base/text.h"

#include <algorithm>

namespace ellwynd {

namespace {

constexpr std::size_t mostSuggestions = 12;

FindEntry entryOf(const RiskRow &row) {
    return {
        .kind = FoundKind::student,
        .title = row.name,
        .detail = row.courseName,
        .level = row.level,
        .id = row.id,
        .courseID = row.courseID};
}

FindEntry entryOf(const TermGroup &term) {
    return {
        .kind = FoundKind::term,
        .title = title(term),
        .detail = plural(std::int64_t(term.courses.size()), "course"),
        .id = term.id(),
        .beginsAt = term.term ? term.term->startAt : std::nullopt};
}

} // namespace

FindEntry entryOf(const Course &course) {
    const CourseLabel label = courseLabel(course);
    FindEntry entry{
        .kind = FoundKind::course,
        .title = displayName(course),
        .detail = course.term ? displayName(*course.term) : std::string(),
        .id = course.id,
        .courseID = course.id,
        .beginsAt = course.term ? course.term->startAt : std::nullopt};
    for (const std::string &name : {label.name, label.code, course.courseCode.value_or("")}) {
        const bool known = std::ranges::find(entry.otherNames, name) != entry.otherNames.end();
        if (!name.empty() && name != entry.title && !known)
            entry.otherNames.push_back(name);
    }
    return entry;
}

std::vector<FindEntry> studentsOf(const ScoredCourse &course) {
    std::vector<FindEntry> entries;
    for (const RiskRow &row : course.rows) {
        entries.push_back(entryOf(row));
        if (row.sortableName && !row.sortableName->empty())
            entries.back().otherNames.push_back(*row.sortableName);
    }
    return entries;
}

std::vector<FindEntry> entriesOf(const std::vector<Course> &courses, const RosterCache &cache) {
    std::vector<FindEntry> entries;
    for (const Course &course : courses) {
        entries.push_back(entryOf(course));
        if (const SharedCourse scored = cache.find(course.id))
            std::ranges::move(studentsOf(*scored), std::back_inserter(entries));
    }
    for (const TermGroup &term : groupByTerm(courses))
        entries.push_back(entryOf(term));
    return entries;
}

std::size_t FindContents::count() const {
    std::size_t count = courses.size() + commands.size();
    for (const auto &[id, course] : rosters.entries)
        count += course->rows.size();
    return count;
}

FindIndex indexOf(const FindContents &contents) {
    std::vector<FindEntry> entries = entriesOf(contents.courses, contents.rosters);
    entries.insert(entries.end(), contents.commands.begin(), contents.commands.end());
    return FindIndex(std::move(entries), contents.suggestions);
}

std::vector<FindEntry> suggestionsOf(const DashboardTerm *term) {
    std::vector<FindEntry> entries;
    if (term == nullptr)
        return entries;
    for (const DashboardStudent &student : term->students) {
        if (entries.size() == mostSuggestions)
            break;
        entries.push_back(entryOf(*student.row));
    }
    return entries;
}

} // namespace ellwynd
