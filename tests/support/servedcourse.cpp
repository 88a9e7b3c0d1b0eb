#include "support/servedcourse.h"

#include "support/fakecanvas.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <array>

namespace ellwynd::test {

namespace {

using JSON = nlohmann::ordered_json;
using std::chrono::hours;

constexpr std::int64_t groupSize = 10;
constexpr std::int64_t firstAssignment = 500;

/// Names with other scripts, diacritics, and characters that JSON must escape.
constexpr std::array<std::string_view, 8> names{
    "Ana Ruiz",    "Jo\"Jo\" O'Neil", "山田 花子", "Łukasz Żółć",
    "Zoë <Quill>", "A\\B\tC",         "🦊 Fox",  "Ngũgĩ wa Mwangi",
};

/// A pseudo-random number below `count`, determined by `a` and `b`.
std::int64_t draw(std::int64_t a, std::int64_t b, std::int64_t count) {
    const auto mixed = (std::uint64_t(a) * 2654435761U + std::uint64_t(b)) * 0x9e3779b97f4a7c15U;
    return std::int64_t((mixed >> 33U) % std::uint64_t(count));
}

Enrollment inventEnrollment(std::int64_t id, Date now) {
    Enrollment student{
        .userID = id,
        .user = EnrolledUser{.id = id, .name = fmt::format("{} {}", names[id % 8], id)},
        .grades = Grades{}};
    // Some students have no sortable name, no grade, no activity or no time.
    if (id % 9 != 0)
        student.user->sortableName = fmt::format("{}, {}", id, names[id % 8]);
    if (id % 13 != 0) {
        student.grades->currentScore = 100 - 0.25 * double(draw(id, 1, 200));
        student.grades->currentGrade = *student.grades->currentScore < 60 ? "F" : "B−";
    }
    if (id % 17 != 0)
        student.lastActivityAt = now - hours(draw(id, 2, 300)) - std::chrono::seconds(id % 60);
    if (id % 19 != 0)
        student.totalActivityTime = draw(id, 3, 200'000);
    return student;
}

SubmissionSummary inventSubmission(std::int64_t student, std::int64_t assignment, Date now) {
    // There are two due dates a week, most of them in the past; some assignments have none. The
    // next is more than three days ahead: it adds a reason to every student, and a benchmark that
    // compares the memory of the first and of the second day would measure that.
    const std::int64_t index = assignment - firstAssignment;
    const Date due = now - hours(24 * 7 * (index - 8) / 2);
    const bool handedIn = due < now && draw(student, assignment, 25) > 0;
    const bool graded = handedIn && draw(student, assignment, 5) > 0;
    SubmissionSummary work{
        .userID = student,
        .assignmentID = assignment,
        .workflowState = graded ? "graded"
            : handedIn          ? "submitted"
                                : "unsubmitted",
        .missing = due < now && !handedIn,
        .late = handedIn && draw(student, assignment, 7) == 1};
    if (graded)
        work.score = 0.5 * double(draw(student, assignment, 41));
    if (index % 12 != 11)
        work.cachedDueDate = due;
    return work;
}

// ---- As Canvas writes them ---------------------------------------------------------------------

template<class Value>
JSON orNull(const std::optional<Value> &value) {
    return value ? JSON(*value) : JSON(nullptr);
}

JSON orNull(const std::optional<Date> &date) {
    return date ? JSON(formatInstant(*date)) : JSON(nullptr);
}

/// HTML as Canvas's editor produces it, at least `length` bytes.
std::string markup(std::size_t length) {
    static const std::string sentence =
        "<p class=\"body\">The tide, then, was neither \"early\" nor late &amp; the caf\u00e9 was "
        "shut.\nWhoever reads this has come far.</p>";
    std::string text;
    while (text.size() < length)
        text += sentence;
    return text;
}

/// A record with what the program reads, and the keys of a text, most of them ignored.
JSON withIgnored(JSON record, const char *text) {
    record.update(JSON::parse(text), true);
    return record;
}

JSON json(const Course &course) {
    const Term &term = *course.term;
    return withIgnored(
        {{"id", course.id},
         {"name", orNull(course.name)},
         {"course_code", orNull(course.courseCode)},
         {"apply_assignment_group_weights", orNull(course.appliesGroupWeights)},
         {"enrollment_term_id", term.id},
         {"term",
          {{"id", term.id},
           {"name", orNull(term.name)},
           {"start_at", orNull(term.startAt)},
           {"end_at", orNull(term.endAt)}}}},
        R"({"account_id": 1, "uuid": "pQ9x7VbWJ2mTzLk4", "start_at": null,
            "default_view": "modules", "time_zone": "America/Chicago",
            "term": {"workflow_state": "active", "grading_period_group_id": null},
            "enrollments": [{"type": "teacher", "role": "TeacherEnrollment", "user_id": 7}],
            "workflow_state": "available"})");
}

JSON json(const Enrollment &student, std::int64_t courseID) {
    const Grades &grades = *student.grades;
    JSON record = withIgnored(
        {{"id", 1'000'000 + student.userID},
         {"user_id", student.userID},
         {"course_id", courseID},
         {"last_activity_at", orNull(student.lastActivityAt)},
         {"grades",
          {{"current_grade", orNull(grades.currentGrade)},
           {"current_score", orNull(grades.currentScore)},
           {"unposted_current_score", orNull(grades.currentScore)}}},
         {"user",
          {{"id", student.user->id},
           {"name", orNull(student.user->name)},
           {"sortable_name", orNull(student.user->sortableName)}}}},
        R"({"type": "StudentEnrollment", "created_at": "2026-08-01T14:00:00Z",
            "updated_at": "2026-08-20T14:00:00Z", "associated_user_id": null,
            "course_section_id": 31, "limit_privileges_to_course_section": false,
            "root_account_id": 1, "role": "StudentEnrollment", "enrollment_state": "active",
            "sis_user_id": "S90001",
            "grades": {"html_url": "https://canvas.example.edu/courses/4021/grades/90001",
                       "final_grade": "F", "final_score": 41.5},
            "user": {"created_at": "2024-08-01T09:30:00-06:00", "short_name": "Somebody else",
                     "login_id": "u90001"}})");
    // Canvas omits the key if the institution does not record time.
    if (student.totalActivityTime)
        record["total_activity_time"] = *student.totalActivityTime;
    return record;
}

JSON json(const Assignment &assignment, std::int64_t courseID, std::int64_t groupID) {
    JSON record = withIgnored(
        {{"id", assignment.id},
         {"description", markup(1600)},
         {"points_possible", orNull(assignment.pointsPossible)},
         {"assignment_group_id", groupID},
         {"course_id", courseID},
         {"name", orNull(assignment.name)},
         {"omit_from_final_grade", orNull(assignment.omitFromFinalGrade)},
         {"secure_params", std::string(300, 'e')},
         {"published", orNull(assignment.published)}},
        R"({"due_at": "2026-09-19T05:59:59Z", "unlock_at": null, "lock_at": null,
            "grading_type": "points", "created_at": "2026-08-02T10:00:00Z", "peer_reviews": false,
            "position": 1, "submission_types": ["online_text_entry", "online_upload"],
            "has_submitted_submissions": true, "is_quiz_assignment": false,
            "html_url": "https://canvas.example.edu/courses/4021/assignments/500",
            "rubric": [{"id": "_4021", "points": 10, "description": "Argument",
                        "ratings": [{"id": "a", "points": 10}, {"id": "b", "points": 0}]}]})");
    record["rubric"][0]["long_description"] = markup(200);
    return record;
}

JSON json(const AssignmentGroup &group, std::int64_t courseID) {
    JSON assignments = JSON::array();
    for (const Assignment &assignment : *group.assignments)
        assignments.push_back(json(assignment, courseID, group.id));
    return withIgnored(
        {{"id", group.id},
         {"name", orNull(group.name)},
         {"group_weight", orNull(group.groupWeight)},
         {"assignments", std::move(assignments)}},
        R"({"position": 1, "rules": {"drop_lowest": 1}})");
}

JSON json(const SubmissionSummary &work) {
    const bool handedIn = work.workflowState != WorkflowState::unsubmitted;
    const auto essay = std::size_t(draw(work.userID, work.assignmentID, 900));
    return withIgnored(
        {{"id", work.userID * 1000 + work.assignmentID},
         {"body", handedIn ? JSON(markup(essay)) : JSON(nullptr)},
         {"score", orNull(work.score)},
         {"assignment_id", work.assignmentID},
         {"user_id", work.userID},
         {"workflow_state", work.workflowState.name()},
         {"cached_due_date", orNull(work.cachedDueDate)},
         {"late", orNull(work.late)},
         {"missing", orNull(work.missing)}},
        R"({"url": null, "grade": "8.5", "submitted_at": "2026-09-18T21:14:05Z",
            "submission_type": "online_text_entry", "grade_matches_current_submission": true,
            "graded_at": "2026-09-18T21:14:05Z", "grader_id": -42, "attempt": 1,
            "excused": false, "late_policy_status": null, "points_deducted": null,
            "grading_period_id": null, "extra_attempts": null, "posted_at": "2026-09-18T21:14:05Z",
            "redo_request": false, "custom_grade_status_id": null, "sticker": null,
            "seconds_late": 0, "entered_grade": null, "entered_score": null,
            "preview_url": "https://canvas.example.edu/courses/4021/assignments/500/submissions/1",
            "anonymous_id": "a1B2c"})");
}

template<class Record, class... Context>
std::vector<QByteArray> texts(const std::vector<Record> &records, Context... context) {
    std::vector<QByteArray> list;
    list.reserve(records.size());
    for (const Record &record : records)
        list.push_back(QByteArray::fromStdString(json(record, context...).dump()));
    return list;
}

} // namespace

ServedCourse inventCourse(std::int64_t id, CourseSize size, Date instant) {
    // Canvas writes whole seconds.
    const Date now = std::chrono::floor<std::chrono::seconds>(instant);
    ServedCourse served{
        .course = {
            .id = id,
            .name = fmt::format("Course \"{}\" – Writing", id),
            .courseCode = fmt::format("WRI {}", id),
            .term =
                Term{
                    .id = 9001,
                    .name = "Fall",
                    .startAt = now - hours(24 * 40),
                    .endAt = now + hours(24 * 70)},
            .appliesGroupWeights = id % 2 == 1}};
    for (std::int64_t i = 0; i < size.students; ++i)
        served.enrollments.push_back(inventEnrollment(size.firstStudent + i, now));
    for (std::int64_t i = 0; i < size.assignments; ++i) {
        if (i % groupSize == 0) {
            served.groups.push_back(
                {.id = 70 + i / groupSize,
                 .name = fmt::format("Group {}", i / groupSize),
                 .groupWeight = 12.5,
                 .assignments = std::vector<Assignment>{}});
        }
        served.groups.back().assignments->push_back(
            {.id = firstAssignment + i,
             .name = fmt::format("Essay {} – “{}”", i + 1, names[i % 8]),
             .pointsPossible = i % 11 == 10 ? std::nullopt : std::optional(20.0),
             .omitFromFinalGrade = i % 14 == 13,
             .published = i % 15 != 14});
    }
    for (const Enrollment &student : served.enrollments) {
        for (std::int64_t i = 0; i < size.assignments; ++i)
            served.submissions.push_back(
                inventSubmission(student.userID, firstAssignment + i, now));
    }
    return served;
}

void serve(FakeCanvas &canvas, std::span<const ServedCourse> courses) {
    std::vector<QByteArray> list;
    for (const ServedCourse &served : courses) {
        list.push_back(QByteArray::fromStdString(json(served.course).dump()));
        const std::int64_t id = served.course.id;
        const QString path = QString("/api/v1/courses/%1").arg(id);
        canvas.serve(path + "/enrollments", texts(served.enrollments, id));
        canvas.serve(path + "/assignment_groups", texts(served.groups, id));
        canvas.serve(path + "/students/submissions", texts(served.submissions));
    }
    canvas.serve("/api/v1/courses", std::move(list));
}

QString coursePath(int course, const char *list) {
    return QString("/api/v1/courses/%1/%2").arg(course).arg(list);
}

void serveScores(FakeCanvas &canvas, int course, int score, int students) {
    std::vector<QByteArray> all;
    for (int id = course * 10 + 1; id <= course * 10 + students; ++id)
        all.push_back(QByteArray::fromStdString(fmt::format(
            R"({{"user_id":{0},"user":{{"id":{0},"name":"Student"}},)"
            R"("grades":{{"current_score":{1}}}}})",
            id, score)));
    canvas.serve(coursePath(course, "enrollments"), std::move(all));
    canvas.serve(coursePath(course, "assignment_groups"), {});
    canvas.serve(coursePath(course, "students/submissions"), {});
}

} // namespace ellwynd::test
