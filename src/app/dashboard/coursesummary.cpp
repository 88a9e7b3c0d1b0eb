#include "app/dashboard/coursesummary.h"

#include "app/roster/visit.h"
#include "base/calendar.h"

#include <algorithm>
#include <set>

namespace ellwynd {

const CourseSummary &CourseSummaries::of(const SharedCourse &course, Date now) {
    const std::int64_t id = course->course.id;
    Inputs inputs{
        .history = stores.history.revision(id),
        .contacts = stores.contacts.revision(id),
        .remote = trends.remoteCounts(id, course->fetchedAt),
        .day = calendar::startOfDay(now)};
    Known &entry = known[course.get()];
    if (!entry.course || entry.inputs != inputs) {
        entry.course = course;
        entry.inputs = std::move(inputs);
        CourseSummary &summary = entry.summary;
        summary.movement = movementOf(*course, stores);
        summary.students = flaggedStudents(course, summary.movement, stores, now);
        summary.card = dashboardCard(*course, summary.movement, summary.students, stores, trends);
    }
    return entry.summary;
}

void CourseSummaries::keep(std::span<const SharedCourse> courses) {
    std::set<const ScoredCourse *> kept;
    for (const SharedCourse &course : courses)
        kept.insert(course.get());
    std::erase_if(known, [&](const auto &entry) { return !kept.contains(entry.first); });
}

void setCourses(
    DashboardTerm &term, std::span<const SharedCourse> courses, CourseSummaries &summaries,
    const Stores &stores, Date now) {
    term.cards.clear();
    std::vector<DashboardStudent> students;
    term.remembersContacts = stores.contacts.isEnabled();
    for (const SharedCourse &course : courses) {
        const CourseSummary &summary = summaries.of(course, now);
        term.cards.push_back(summary.card);
        students.insert(students.end(), summary.students.begin(), summary.students.end());
    }
    std::vector<CourseLabel *> labels;
    for (DashboardCourseCard &card : term.cards)
        labels.push_back(&card.label);
    compareNames(labels);
    sortByNeed(students);
    term.flaggedStudents = findOtherCourses(students);
    term.students = SharedList<DashboardStudent>::large(std::move(students));
}

} // namespace ellwynd
