#include "school.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace ellwynd::simulation {

namespace {

constexpr int coursesPerTerm = 2;
constexpr int studentsPerCourse = 5;
constexpr std::chrono::days termLength{110};

} // namespace

School::School(int number, Date now) : number(number) {
    beginTerm(1, now);
}

const School::OneCourse *School::find(std::int64_t courseID) const {
    const auto found =
        std::ranges::find(courses, courseID, [](const OneCourse &each) { return each.course.id; });
    return found != courses.end() ? &*found : nullptr;
}

School::OneCourse *School::find(std::int64_t courseID) {
    return const_cast<OneCourse *>(std::as_const(*this).find(courseID));
}

std::vector<Course> School::courseList() const {
    std::vector<Course> list;
    for (const OneCourse &each : courses)
        list.push_back(each.course);
    return list;
}

std::vector<Enrollment> School::enrollments(const OneCourse &course) {
    std::vector<Enrollment> list;
    for (const Student &student : course.students) {
        if (!student.enrolled)
            continue;
        list.push_back(
            {.userID = student.id,
             .user = EnrolledUser{.id = student.id, .name = student.name},
             .grades = Grades{.currentScore = student.score},
             .lastActivityAt = student.lastActivityAt,
             .totalActivityTime = student.secondsInCourse});
    }
    return list;
}

std::vector<AssignmentGroup> School::groups(const OneCourse &course) {
    return {{.id = 1, .groupWeight = 100, .assignments = course.assignments}};
}

std::vector<SubmissionSummary> School::submissions(const OneCourse &course, Date now) {
    std::vector<SubmissionSummary> list = course.submissions;
    for (SubmissionSummary &work : list) {
        const std::chrono::days grace{work.assignmentID % 3 == 0 ? 2 : 0};
        work.missing = work.workflowState == "unsubmitted" && work.cachedDueDate < now - grace;
    }
    return list;
}

void School::beginTerm(std::int64_t termID, Date now) {
    const Term term{
        .id = termID,
        .name = fmt::format("Term {}", termID),
        .startAt = now,
        .endAt = now + termLength};
    for (int i = 0; i < coursesPerTerm; ++i) {
        const std::int64_t id = termID * 100 + i;
        OneCourse &course = courses.emplace_back();
        course.course = {
            .id = id, .name = fmt::format("Course {} of school {}", id, number), .term = term};
        for (int student = 0; student < studentsPerCourse; ++student) {
            join(course);
            course.students.back().lastActivityAt = now;
        }
    }
}

void School::endTerm(std::int64_t termID, Date now) {
    for (OneCourse &each : courses) {
        if (each.course.term->id == termID && each.course.term->endAt > now)
            each.course.term->endAt = now;
    }
}

Date School::plannedEnd(const Term &term) {
    return *term.startAt + termLength;
}

void School::join(OneCourse &course) {
    ++lastStudentID;
    course.students.push_back(
        {.id = number * 1000 + lastStudentID,
         .name = fmt::format("{} {}", nameMarker, lastStudentID)});
}

void School::setWork(OneCourse &course, Date now) {
    const std::int64_t id = course.course.id * 1000 + std::int64_t(course.assignments.size());
    course.assignments.push_back(
        {.id = id, .name = fmt::format("Work {}", id), .pointsPossible = 10, .published = true});
    for (const Student &student : course.students) {
        if (student.enrolled)
            course.submissions.push_back(
                {.userID = student.id,
                 .assignmentID = id,
                 .workflowState = "unsubmitted",
                 .cachedDueDate = now + std::chrono::days(3)});
    }
}

} // namespace ellwynd::simulation
