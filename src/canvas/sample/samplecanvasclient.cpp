#include "canvas/sample/samplecanvasclient.h"

#include "canvas/records/decoding.h"
#include "canvas/sample/samplecollege.h"

#include <fmt/format.h>

#include <algorithm>

// The responses are written as Canvas's JSON and decoded like it, so that sample courses are
// processed exactly like real ones.

namespace ellwynd {

namespace {

using namespace std::chrono;
using namespace sample;

/// A JSON array of the objects that `write` appends for each item.
template<class List, class Write>
std::string listOf(const List &list, Write write) {
    std::string json = "[";
    for (const auto &item : list) {
        if (json.size() > 1)
            json += ',';
        write(json, item);
    }
    return json + "]";
}

std::string coursesJSON(std::span<const SampleTerm> terms, Date now) {
    std::string json = "[";
    for (const SampleTerm &term : terms) {
        for (const SampleCourse &course : term.courses) {
            fmt::format_to(
                std::back_inserter(json),
                R"({}{{"id":{},"name":"{}","apply_assignment_group_weights":{},)"
                R"("term":{{"id":{},"name":"{}","start_at":"{}","end_at":"{}"}}}})",
                json.size() > 1 ? "," : "", course.id, course.name,
                course.appliesGroupWeights ? "true" : "false", term.id, term.name,
                formatInstant(now + term.start), formatInstant(now + term.end));
        }
    }
    return json + "]";
}

std::string enrollmentsJSON(std::int64_t courseID, Date now) {
    return listOf(roster(courseID), [&](std::string &json, const Profile &student) {
        const auto out = std::back_inserter(json);
        fmt::format_to(
            out, R"({{"user_id":{0},"user":{{"id":{0},"name":"{1}"}},"total_activity_time":{2})",
            student.id, student.firstName, std::int64_t(student.activityHours * 3600));
        if (student.daysSinceActivity) {
            // Two more hours, so that the number of whole days is exact.
            const Date activity = now - days{*student.daysSinceActivity} - hours{2};
            fmt::format_to(out, R"(,"last_activity_at":"{}")", formatInstant(activity));
        }
        std::string grades;
        if (student.currentScore)
            grades = fmt::format(R"("current_score":{})", *student.currentScore);
        if (!student.currentGrade.empty()) {
            grades += fmt::format(
                R"({}"current_grade":"{}")", grades.empty() ? "" : ",", student.currentGrade);
        }
        fmt::format_to(out, R"(,"grades":{{{}}}}})", grades);
    });
}

std::string assignmentGroupsJSON(std::int64_t courseID) {
    return listOf(assignmentGroups(courseID), [](std::string &json, const SampleGroup &group) {
        const std::string assignments =
            listOf(group.assignments, [](std::string &inner, const SampleAssignment &assignment) {
                fmt::format_to(
                    std::back_inserter(inner), R"({{"id":{},"name":"{}","points_possible":{}}})",
                    assignment.id, assignment.name, assignment.points);
            });
        const std::string weight =
            group.weight ? fmt::format(R"("group_weight":{},)", *group.weight) : "";
        fmt::format_to(
            std::back_inserter(json), R"({{"id":{},"name":"{}",{}"assignments":{}}})", group.id,
            group.name, weight, assignments);
    });
}

std::string submissionsJSON(std::int64_t courseID, Date now) {
    const std::string due = formatInstant(now - days{5});
    const std::vector<SampleGroup> groups = assignmentGroups(courseID);
    std::string json = "[";
    const auto out = std::back_inserter(json);
    for (const Profile &student : roster(courseID)) {
        for (const SampleGroup &group : groups) {
            for (const SampleAssignment &assignment : group.assignments) {
                const bool missing = std::ranges::count(student.missing, assignment.id) > 0;
                fmt::format_to(
                    out,
                    R"({}{{"user_id":{},"assignment_id":{},"workflow_state":"{}","missing":{},)"
                    R"("cached_due_date":"{}"{}}})",
                    json.size() > 1 ? "," : "", student.id, assignment.id,
                    missing ? "unsubmitted" : "graded", missing ? "true" : "false", due,
                    missing ? "" : R"(,"score":8.5)");
            }
        }
    }
    return json + "]";
}

} // namespace

QCoro::Task<ListRead<Course>> SampleCanvasClient::fetchCourses() {
    ListRead<Course> list{.records = decodeCourses(coursesJSON(activeTerms(), now()))};
    co_return list;
}

QCoro::Task<ListRead<Enrollment>> SampleCanvasClient::fetchEnrollments(std::int64_t courseID) {
    ListRead<Enrollment> list{.records = decodeEnrollments(enrollmentsJSON(courseID, now()))};
    co_return list;
}

QCoro::Task<ListRead<AssignmentGroup>>
SampleCanvasClient::fetchAssignmentGroups(std::int64_t courseID) {
    ListRead<AssignmentGroup> list{
        .records = decodeAssignmentGroups(assignmentGroupsJSON(courseID))};
    co_return list;
}

QCoro::Task<ListRead<SubmissionSummary>>
SampleCanvasClient::fetchSubmissions(std::int64_t courseID) {
    ListRead<SubmissionSummary> list{
        .records = decodeSubmissions(submissionsJSON(courseID, now()))};
    co_return list;
}

std::vector<Course> SampleCanvasClient::olderCourses(Date now) {
    return decodeCourses(coursesJSON(olderTerms(), now));
}

} // namespace ellwynd
