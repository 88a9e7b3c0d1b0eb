#include "app/roster/rosterloader.h"

#include "risk/scorer.h"

#include <algorithm>

namespace ellwynd {

void rescore(ScoredCourse &course, const CourseThresholds &thresholds, Date now) {
    const std::vector<Enrollment> roster = reduceToStudents(course.students);
    // Canvas also returns the test student and people who have left the course.
    std::unordered_set<std::int64_t> onRoster;
    for (const Enrollment &student : roster)
        onRoster.insert(student.userID);
    std::vector<SubmissionSummary> submissions;
    submissions.reserve(course.submissions.size());
    std::ranges::copy_if(
        course.submissions, std::back_inserter(submissions),
        [&](const SubmissionSummary &submission) { return onRoster.contains(submission.userID); });

    const std::string name = displayName(course.course);
    course.thresholds = thresholds;
    course.rows = scoreRoster({
        .courseID = course.course.id,
        .courseName = name,
        .enrollments = roster,
        .submissions = submissions,
        .passingScore = thresholds.passingScore,
        .inactivityDays = thresholds.inactivityDays,
        .termEndsAt = course.termEndsAt,
        // Without shares there is nothing to weigh by, and missing work is counted.
        .weighting = course.weighting.sharesByAssignment.empty() ? nullptr : &course.weighting,
        .names = course.weighting.namesByAssignment,
        .now = now,
    });
    course.missedWork = missedWork(submissions, roster.size(), course.weighting.namesByAssignment);
}

ScoredCourse scoreCourse(
    Course course, std::vector<Enrollment> students, const std::vector<AssignmentGroup> &groups,
    std::vector<SubmissionSummary> submissions, const CourseThresholds &thresholds, Date now) {
    ScoredCourse scored;
    scored.weighting = gradeWeighting(groups, course.appliesGroupWeights);
    scored.termEndsAt = course.term ? course.term->endAt : std::nullopt;
    scored.course = std::move(course);
    scored.students = std::move(students);
    scored.submissions = std::move(submissions);
    scored.fetchedAt = now;
    rescore(scored, thresholds, now);
    return scored;
}

QCoro::Task<ScoredCourse>
loadCourse(CanvasReading &source, Course course, const UserDefaults &defaults, Clock clock) {
    // Tasks start at once, so the three reads run side by side.
    auto enrollments = source.fetchEnrollments(course.id);
    auto groups = source.fetchAssignmentGroups(course.id);
    auto submissions = source.fetchSubmissions(course.id);
    auto students = co_await enrollments;
    const auto fetchedGroups = co_await groups;
    auto work = co_await submissions;
    const CourseThresholds thresholds = courseThresholds(defaults, course.id);
    ScoredCourse scored = scoreCourse(
        std::move(course), std::move(students.records), fetchedGroups.records,
        std::move(work.records), thresholds, clock());
    const auto addNote = [&](std::string_view records, std::optional<CutShort> cutShort) {
        if (cutShort)
            scored.notes.push_back(cutShortText(records, *cutShort));
    };
    addNote("students", students.cutShort);
    addNote("assignments", fetchedGroups.cutShort);
    addNote("submissions", work.cutShort);
    co_return scored;
}

} // namespace ellwynd
