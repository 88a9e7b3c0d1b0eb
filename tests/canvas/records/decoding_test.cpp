#include "canvas/records/decoding.h"
#include "support/instants.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

TEST(Decoding, ReadsEveryMember) {
    const auto courses = decodeCourses(R"([
        {"id": 4021, "name": "Bio", "course_code": "BIO", "unknown": {"id": "x", "deep": [1, [2]]},
         "apply_assignment_group_weights": true,
         "term": {"id": 7, "name": "Fall", "start_at": "2026-09-01T06:00:00-06:00", "end_at": null}},
        {"id": 5}])");
    const Course bio{
        .id = 4021,
        .name = "Bio",
        .courseCode = "BIO",
        .term = Term{.id = 7, .name = "Fall", .startAt = test::at("2026-09-01T12:00:00Z")},
        .appliesGroupWeights = true};
    EXPECT_EQ(courses, (std::vector{bio, Course{.id = 5}}));

    const auto groups = decodeAssignmentGroups(
        R"([{"id": 1, "group_weight": 40, "assignments": [
            {"id": 2, "name": "Lab \u00e9", "points_possible": 0.5, "published": false,
             "omit_from_final_grade": true}]},
            {"id": 3, "assignments": null}])");
    const Assignment lab{
        .id = 2,
        .name = "Lab é",
        .pointsPossible = 0.5,
        .omitFromFinalGrade = true,
        .published = false};
    const AssignmentGroup first{.id = 1, .groupWeight = 40, .assignments = std::vector{lab}};
    EXPECT_EQ(groups, (std::vector{first, AssignmentGroup{.id = 3}}));

    const auto enrollments = decodeEnrollments(
        R"([{"user_id": 9, "user": {"id": 9, "name": null, "sortable_name": "Ruiz, Ana"},
             "grades": {"current_score": 72.5, "current_grade": "C"},
             "last_activity_at": "2026-09-24T12:00:00.5Z", "total_activity_time": null},
            {"user_id": -9, "grades": {}}])");
    const Enrollment ana{
        .userID = 9,
        .user = EnrolledUser{.id = 9, .sortableName = "Ruiz, Ana"},
        .grades = Grades{.currentScore = 72.5, .currentGrade = "C"},
        .lastActivityAt = test::noon + std::chrono::milliseconds(500)};
    EXPECT_EQ(enrollments, (std::vector{ana, Enrollment{.userID = -9, .grades = Grades{}}}));

    const auto submissions = decodeSubmissions(
        R"([{"user_id": 1, "assignment_id": 2, "workflow_state": "new_state", "missing": null,
             "late": true, "score": 8, "cached_due_date": "2026-09-24T12:00:00Z"}])");
    const SubmissionSummary summary{
        .userID = 1,
        .assignmentID = 2,
        .workflowState = "new_state",
        .late = true,
        .score = 8,
        .cachedDueDate = test::noon};
    EXPECT_EQ(submissions, std::vector{summary});
    EXPECT_NE(submissions[0].workflowState, WorkflowState("another_new_state"));
    for (const auto &[state, name] :
         {std::pair{submissions[0].workflowState, "new_state"},
          {WorkflowState("another_new_state"), "another_new_state"},
          {WorkflowState::unsubmitted, "unsubmitted"},
          {WorkflowState::submitted, "submitted"},
          {WorkflowState::graded, "graded"},
          {WorkflowState::pendingReview, "pending_review"}})
        EXPECT_EQ(state.name(), name);
    EXPECT_TRUE(decodeSubmissions(" [ ] \n").empty());
    EXPECT_EQ(
        decodeCourses(R"([{"id": 5, "name": "Bio", "name": null}])"), std::vector{Course{.id = 5}})
        << "of a member given twice the last counts";
}

TEST(DecodingDeathTest, KeepsTheNamesOfAThousandOtherStates) {
    // In a process of its own, since names that were read stay.
    const auto readMany = [] {
        const auto isNamed = [](int number) {
            const std::string name = "state " + std::to_string(number);
            return WorkflowState(name).name() == name;
        };
        int named = 0;
        while (named < 2000 && isNamed(named))
            ++named;
        const bool isCounted = named > 900 && named <= 1000;
        std::_Exit(isCounted && isNamed(0) && WorkflowState("last").name().empty() ? 0 : 1);
    };
    EXPECT_EXIT(readMany(), testing::ExitedWithCode(0), "");
}

TEST(Decoding, IntegersMayBeWrittenAsReals) {
    for (const auto &[json, id] : std::vector<std::pair<std::string, std::int64_t>>{
             {R"({"id": 5.0})", 5},
             {R"({"id": 5e3})", 5000},
             {R"({"id": 1, "id": 2})", 2},
             {R"({"\u0069d": 3})", 3},
             {R"({"id": 9223372036854775807})", INT64_MAX},
             // Beside integers that are rewritten.
             {R"({"x": [100000000000000000000, 1], "id": 1000000000000000001})",
              1'000'000'000'000'000'001},
             {R"({"x": [100000000000000000000, 1], "id": -9223372036854775808})", INT64_MIN},
             {R"({"id": 9223372036854775807, "x\"\\": 18446744073709551616,
                  "y": -9223372036854775809})",
              INT64_MAX}})
        EXPECT_EQ(decodeCourse(json).id, id) << json;
    EXPECT_THROW((void)decodeCourse(R"({"id": 9007199254740993.0})"), DecodingError);
    EXPECT_EQ(
        decodeEnrollments(
            R"([{"user_id": 1, "grades": {"current_score": -100000000000000000000}}])")[0]
            .grades->currentScore,
        -1e20);
    // Digits in a text are no number, wherever it begins.
    for (const std::string before : {"", " ", "  "}) {
        const Course digits = decodeCourse(
            before +
            R"({"id": 1, "name": "100000000000000000000", "y": 99999999999999999999,
                "course_code": "x100000000000000000000"})");
        EXPECT_EQ(digits.name, "100000000000000000000");
        EXPECT_EQ(digits.courseCode, "x100000000000000000000");
    }
}

std::string failure(const std::string &json, auto decode) {
    try {
        (void)decode(json);
    } catch (const DecodingError &error) {
        return error.what();
    }
    return "decoded";
}
std::string failure(const std::string &json) {
    return failure(json, decodeSubmissions);
}

std::string submission(const std::string &fields) {
    return R"([{"user_id": 1, "assignment_id": 2, "workflow_state": "graded"}, {)" + fields + "}]";
}

TEST(Decoding, ErrorsNameTheRecordAndTheKey) {
    const std::string ids = R"("user_id": 1, "assignment_id": 2, "workflow_state": )";
    for (const auto &[fields, problem] : std::vector<std::pair<std::string, std::string>>{
             {R"("user_id": 1, "assignment_id": 2)", "workflow_state is missing"},
             {R"("user_id": 1, "workflow_state": "graded")", "assignment_id is missing"},
             {R"("assignment_id": 2, "workflow_state": "graded")", "user_id is missing"},
             {ids + "null", "workflow_state is not a string"},
             {ids + R"("graded", "missing": 1)", "missing is not a boolean"},
             {ids + R"("graded", "score": "8")", "score is not a number"},
             {ids + R"("graded", "cached_due_date": 5)", "cached_due_date is not a date"},
             {ids + R"("graded", "cached_due_date": "2026-09-24")",
              "cached_due_date is not an ISO 8601 date with a time and an offset"},
             {ids + R"("graded", "user_id": 1.5)", "user_id is not a 64-bit integer"},
             {ids + R"("graded", "user_id": 9223372036854775808)",
              "user_id is not a 64-bit integer"}})
        EXPECT_EQ(failure(submission(fields)), "SubmissionSummary [1]." + problem);
    EXPECT_EQ(failure(R"({"errors": []})"), "SubmissionSummary is not an array");
    EXPECT_EQ(failure("[7]"), "SubmissionSummary [0] is not an object");
    EXPECT_EQ(failure(R"({"id": 5, "name": 7})", decodeCourse), "Course name is not a string");
    EXPECT_EQ(
        failure(R"({"id": 1, "term": {"name": "Fall"}})", decodeCourse),
        "Course term.id is missing");
    EXPECT_EQ(failure("[{}]", decodeCourses), "Course [0].id is missing");
    EXPECT_EQ(failure("[{}]", decodeAssignmentGroups), "AssignmentGroup [0].id is missing");
    EXPECT_EQ(
        failure(R"([{"id": 1, "assignments": [{}]}])", decodeAssignmentGroups),
        "AssignmentGroup [0].assignments[0].id is missing");
    EXPECT_EQ(failure("[{}]", decodeEnrollments), "Enrollment [0].user_id is missing");
    EXPECT_EQ(
        failure(R"([{"user_id": 1, "user": {}}])", decodeEnrollments),
        "Enrollment [0].user.id is missing");
    EXPECT_EQ(
        failure(R"([{"id": 1, "assignments": [{"id": 2}, {"id": "x"}]}])", decodeAssignmentGroups),
        "AssignmentGroup [0].assignments[1].id is not a 64-bit integer");
}

TEST(Decoding, ErrorsOfTheTextNameTheByte) {
    for (const char *empty : {"", "  "})
        EXPECT_EQ(failure(empty), "SubmissionSummary: the text is empty");
    EXPECT_EQ(failure("[\xff]"), "SubmissionSummary: it is not UTF-8 text");
    EXPECT_EQ(failure(R"(["\ud800"])"), "SubmissionSummary: it is not valid JSON");
    for (const auto &[json, byte] : std::vector<std::pair<std::string, int>>{
             {R"([{"user_id": 1,, }])", 15},
             {R"([{"user\"id": "a\n" 1}])", 20},
             {R"([-1.5e+2, tru])", 10},
             {R"([{"a": [true, false, null, 0, 1e5, -0.5E-3, "x y", [], {}], "b" 1}])", 64},
             {R"([1e+])", 4},
             {R"([1.])", 3},
             {R"([{}, {1}])", 6},
             {R"([] [])", 3},
             // At each of these, what is around it could go on.
             {"tru", 0},
             {R"([ ] [])", 4},
             {R"([[,]])", 2},
             {R"([{:1}])", 2},
             {R"([{"a": [1}])", 9},
             {R"("abc)", 4},
             {"[\"a\nb\"]", 3}})
        EXPECT_EQ(
            failure(json),
            "SubmissionSummary: it is not valid JSON near byte " + std::to_string(byte))
            << json;
}

TEST(Decoding, AllowsNestingUpToTheLimit) {
    const auto nested = [](std::size_t depth) {
        // The array and the record are two levels.
        return submission(
            R"("user_id": 1, "assignment_id": 2, "workflow_state": "graded", "x": )" +
            std::string(depth - 2, '[') + std::string(depth - 2, ']'));
    };
    EXPECT_EQ(failure(nested(maxNesting)), "decoded");
    EXPECT_EQ(failure(nested(maxNesting + 1)), "SubmissionSummary: it nests deeper than 64 levels");
    EXPECT_EQ(failure(nested(200'000)), "SubmissionSummary: it nests deeper than 64 levels");
    // The reason is not the nesting.
    std::string objects;
    for (std::size_t depth = 0; depth < maxNesting; ++depth)
        objects += R"({"a":)";
    EXPECT_EQ(failure(objects + "x"), "SubmissionSummary: it is not valid JSON near byte 320");
    EXPECT_EQ(
        failure(std::string(maxNesting, '[') + "x"),
        "SubmissionSummary: it is not valid JSON near byte 64");
    EXPECT_EQ(failure(objects + objects), "SubmissionSummary: it nests deeper than 64 levels");
}

TEST(Records, DisplayNamesFallBack) {
    EXPECT_EQ(displayName(Course{.id = 4021, .name = "", .courseCode = "BIO"}), "BIO");
    EXPECT_EQ(displayName(Course{.id = 4021, .courseCode = ""}), "Course 4021");
    EXPECT_EQ(displayName(Term{.id = 7, .name = ""}), "Term 7");
}

} // namespace
} // namespace ellwynd
