#include "canvas/records/decoding.h"
#include "support/instants.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using test::at;

TEST(Decoding, ReadsEveryMember) {
    const auto courses = decodeCourses(R"([
        {"id": 4021, "name": "Bio", "course_code": "BIO", "unknown": {"id": "x", "deep": [1, [2]]},
         "apply_assignment_group_weights": true,
         "term": {"id": 7, "name": "Fall", "start_at": "2026-09-01T06:00:00-06:00", "end_at": null}},
        {"id": 5}])");
    ASSERT_EQ(courses.size(), 2U);
    const Course bio{
        .id = 4021,
        .name = "Bio",
        .courseCode = "BIO",
        .term = Term{.id = 7, .name = "Fall", .startAt = at("2026-09-01T12:00:00Z")},
        .appliesGroupWeights = true};
    EXPECT_EQ(courses[0], bio);
    EXPECT_EQ(courses[1], Course{.id = 5});
    EXPECT_THROW((void)decodeCourse(R"({"id": 5, "name": 7})"), DecodingError);

    const auto groups = decodeAssignmentGroups(
        R"([{"id": 1, "group_weight": 40, "assignments": [
            {"id": 2, "name": "Lab \u00e9", "points_possible": 0.5, "published": false,
             "omit_from_final_grade": true}]},
            {"id": 3, "assignments": null}])");
    EXPECT_EQ(groups[0].groupWeight, 40);
    const Assignment lab{
        .id = 2,
        .name = "Lab é",
        .pointsPossible = 0.5,
        .omitFromFinalGrade = true,
        .published = false};
    EXPECT_EQ(groups[0].assignments.value(), std::vector{lab});
    EXPECT_FALSE(groups[1].assignments);

    const auto enrollments = decodeEnrollments(
        R"([{"user_id": 9, "user": {"id": 9, "name": null, "sortable_name": "Ruiz, Ana"},
             "grades": {"current_score": 72.5, "current_grade": "C"},
             "last_activity_at": "2026-09-24T12:00:00.5Z", "total_activity_time": null},
            {"user_id": -9, "grades": {}}])");
    EXPECT_EQ(enrollments[0].user->sortableName, "Ruiz, Ana");
    EXPECT_EQ(enrollments[0].grades->currentScore, 72.5);
    EXPECT_FALSE(enrollments[0].totalActivityTime);
    EXPECT_EQ(enrollments[1].grades, Grades{});

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
    EXPECT_EQ(submissions[0].workflowState.name(), "new_state");
    EXPECT_NE(submissions[0].workflowState, WorkflowState("another_new_state"));
    EXPECT_EQ(WorkflowState("another_new_state").name(), "another_new_state");
    for (const auto &[state, name] :
         {std::pair{WorkflowState::unsubmitted, "unsubmitted"},
          std::pair{WorkflowState::submitted, "submitted"},
          std::pair{WorkflowState::graded, "graded"},
          std::pair{WorkflowState::pendingReview, "pending_review"}})
        EXPECT_EQ(state.name(), name);
    EXPECT_TRUE(decodeSubmissions(" [ ] \n").empty());
}

TEST(Decoding, IntegersMayBeWrittenAsReals) {
    EXPECT_EQ(decodeCourse(R"({"id": 5.0})").id, 5);
    EXPECT_EQ(decodeCourse(R"({"id": 5e3})").id, 5000);
    EXPECT_EQ(decodeCourse(R"({"id": 9223372036854775807})").id, INT64_MAX);
    EXPECT_THROW((void)decodeCourse(R"({"id": 9007199254740993.0})"), DecodingError);
    // Of nineteen digits, beside one that is rewritten.
    for (const std::string id : {"1000000000000000001", "-9223372036854775808"}) {
        EXPECT_EQ(
            std::to_string(
                decodeCourse("{\"x\": [100000000000000000000, " + id + "], \"id\": " + id + "}")
                    .id),
            id);
    }
    EXPECT_EQ(
        decodeCourse(
            R"({"id": 9223372036854775807, "x\"\\": 18446744073709551616, "y": -9223372036854775809})")
            .id,
        INT64_MAX);
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
    EXPECT_EQ(decodeCourse(R"({"id": 1, "id": 2})").id, 2);
    EXPECT_EQ(decodeCourse(R"({"\u0069d": 3})").id, 3);
}

std::string failure(const std::string &json) {
    try {
        (void)decodeSubmissions(json);
    } catch (const DecodingError &error) {
        return error.what();
    }
    return "decoded";
}

std::string submission(const std::string &fields) {
    return R"([{"user_id": 1, "assignment_id": 2, "workflow_state": "graded"}, {)" + fields + "}]";
}

TEST(Decoding, ErrorsNameTheRecordAndTheKey) {
    struct Row {
        std::string json;
        const char *message;
    };
    const std::string ids = R"("user_id": 1, "assignment_id": 2, "workflow_state": "graded", )";
    for (const Row &row : {
             Row{submission(R"("user_id": 1, "assignment_id": 2)"),
                 "SubmissionSummary [1].workflow_state is missing"},
             Row{submission(R"("user_id": 1, "assignment_id": 2, "workflow_state": null)"),
                 "SubmissionSummary [1].workflow_state is not a string"},
             Row{submission(ids + R"("missing": 1)"),
                 "SubmissionSummary [1].missing is not a boolean"},
             Row{submission(ids + R"("score": "8")"),
                 "SubmissionSummary [1].score is not a number"},
             Row{submission(ids + R"("cached_due_date": "2026-09-24")"),
                 "SubmissionSummary [1].cached_due_date is not an ISO 8601 date with a time and an "
                 "offset"},
             Row{submission(ids + R"("user_id": 1.5)"),
                 "SubmissionSummary [1].user_id is not a 64-bit integer"},
             Row{submission(ids + R"("user_id": 9223372036854775808)"),
                 "SubmissionSummary [1].user_id is not a 64-bit integer"},
             Row{R"({"errors": []})", "SubmissionSummary is not an array"},
             Row{"[7]", "SubmissionSummary [0] is not an object"},
             Row{"", "SubmissionSummary: the text is empty"},
             Row{"  ", "SubmissionSummary: the text is empty"},
             Row{"[\xff]", "SubmissionSummary: it is not UTF-8 text"},
             Row{R"([{"user_id": 1,, }])", "SubmissionSummary: it is not valid JSON near byte 15"},
             Row{R"([{"user\"id": "a\n" 1}])",
                 "SubmissionSummary: it is not valid JSON near byte 20"},
             Row{R"([-1.5e+2, tru])", "SubmissionSummary: it is not valid JSON near byte 10"},
             Row{R"([{"a": [true, false, null, 0, 1e5, -0.5E-3, "x y", [], {}], "b" 1}])",
                 "SubmissionSummary: it is not valid JSON near byte 64"},
             Row{R"([1e+])", "SubmissionSummary: it is not valid JSON near byte 4"},
             Row{R"([1.])", "SubmissionSummary: it is not valid JSON near byte 3"},
             Row{R"([{}, {1}])", "SubmissionSummary: it is not valid JSON near byte 6"},
             Row{R"([] [])", "SubmissionSummary: it is not valid JSON near byte 3"},
             // At each of these, what is around it could go on.
             Row{"tru", "SubmissionSummary: it is not valid JSON near byte 0"},
             Row{R"([ ] [])", "SubmissionSummary: it is not valid JSON near byte 4"},
             Row{R"([[,]])", "SubmissionSummary: it is not valid JSON near byte 2"},
             Row{R"([{:1}])", "SubmissionSummary: it is not valid JSON near byte 2"},
             Row{R"([{"a": [1}])", "SubmissionSummary: it is not valid JSON near byte 9"},
             Row{R"("abc)", "SubmissionSummary: it is not valid JSON near byte 4"},
             Row{"[\"a\nb\"]", "SubmissionSummary: it is not valid JSON near byte 3"},
             Row{submission(ids + R"("cached_due_date": 5)"),
                 "SubmissionSummary [1].cached_due_date is not a date"},
             Row{R"(["\ud800"])", "SubmissionSummary: it is not valid JSON"},
         })
        EXPECT_EQ(failure(row.json), row.message);
    try {
        (void)decodeAssignmentGroups(R"([{"id": 1, "assignments": [{"id": 2}, {"id": "x"}]}])");
        FAIL();
    } catch (const DecodingError &error) {
        EXPECT_STREQ(error.what(), "AssignmentGroup [0].assignments[1].id is not a 64-bit integer");
    }
}

TEST(Decoding, EveryRequiredKeyIsRequired) {
    const auto missing = [](auto decode, const std::string &json) -> std::string {
        try {
            (void)decode(json);
        } catch (const DecodingError &error) {
            return error.what();
        }
        return "decoded";
    };
    const std::vector<std::pair<std::string, std::string>> rows{
        {missing(decodeCourses, R"([{"name": "Bio"}])"), "Course [0].id is missing"},
        {missing(decodeCourse, R"({"id": 1, "term": {"name": "Fall"}})"),
         "Course term.id is missing"},
        {missing(decodeAssignmentGroups, R"([{"group_weight": 1}])"),
         "AssignmentGroup [0].id is missing"},
        {missing(decodeAssignmentGroups, R"([{"id": 1, "assignments": [{"name": "Lab"}]}])"),
         "AssignmentGroup [0].assignments[0].id is missing"},
        {missing(decodeEnrollments, R"([{"user": {"id": 1}}])"),
         "Enrollment [0].user_id is missing"},
        {missing(decodeEnrollments, R"([{"user_id": 1, "user": {"name": "Ana"}}])"),
         "Enrollment [0].user.id is missing"},
        {missing(decodeSubmissions, R"([{"assignment_id": 2, "workflow_state": "graded"}])"),
         "SubmissionSummary [0].user_id is missing"},
        {missing(decodeSubmissions, R"([{"user_id": 1, "workflow_state": "graded"}])"),
         "SubmissionSummary [0].assignment_id is missing"},
        {missing(decodeUser, "{}"), "decoded"}};
    for (const auto &[error, expected] : rows)
        EXPECT_EQ(error, expected);
}

TEST(Decoding, RejectsInvalidAndTruncatedJSON) {
    const std::string whole =
        submission(R"("user_id": 1, "assignment_id": 2, "workflow_state": "é")");
    ASSERT_EQ(failure(whole), "decoded");
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_NE(failure(whole.substr(0, length)), "decoded") << length;
    for (const char *text :
         {"[1e999]", "[NaN]", "[\"\\ud800\"]", "[{\"a\": 01}]", "[] []", "[,]", "[{}", "<html>",
          "[nupl]", "{\"a\": [nul"})
        EXPECT_NE(failure(text), "decoded") << text;
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
