#include "canvas/sample/samplecanvasclient.h"
#include "net/runtoend.h"
#include "support/instants.h"

#include <gmock/gmock.h>

#include <set>

namespace ellwynd {
namespace {

using namespace std::chrono_literals;

std::vector<Enrollment> enrollments(std::int64_t courseID) {
    SampleCanvasClient college(test::noonClock);
    return runToEnd(college.fetchEnrollments(courseID)).records;
}

/// With a space after each.
std::string names(std::int64_t courseID) {
    std::string result;
    for (const Enrollment &student : enrollments(courseID))
        result += student.user->name.value() + " ";
    return result;
}

TEST(SampleCollege, ListsItsCoursesWithTheirTerms) {
    SampleCanvasClient college(test::noonClock);
    const auto courses = runToEnd(college.fetchCourses()).records;
    std::vector<std::int64_t> ids;
    for (const Course &course : courses)
        ids.push_back(course.id);
    EXPECT_THAT(ids, testing::ElementsAre(900101, 900102, 900103, 900104, 900105, 900106, 900201));
    EXPECT_EQ(courses[0].name, "CS 101  4021 - Intro to Programming");
    EXPECT_EQ(courses[0].appliesGroupWeights, true);
    EXPECT_EQ(courses[1].appliesGroupWeights, false);
    EXPECT_EQ(courses[0].term->startAt, test::noon - 1'814'400s);
    EXPECT_EQ(courses[6].term->endAt, test::noon - 2'419'200s);
}

TEST(SampleCollege, OlderTermsHaveTwoOrThreeCourses) {
    std::map<std::int64_t, int> perTerm;
    std::set<std::int64_t> ids;
    for (const Course &course : SampleCanvasClient::olderCourses(test::noon)) {
        ++perTerm[course.term->id];
        ids.insert(course.id);
        EXPECT_GE(course.id, SampleCanvasClient::firstCourseID);
        EXPECT_LE(course.id, SampleCanvasClient::lastCourseID);
        EXPECT_GE(enrollments(course.id).size(), 16U);
        EXPECT_LT(course.term->endAt, test::noon);
    }
    EXPECT_EQ(perTerm.size(), 9U);
    for (const auto &[term, count] : perTerm)
        EXPECT_TRUE(count == 2 || count == 3) << term;
    EXPECT_EQ(ids.size(), SampleCanvasClient::olderCourses(test::noon).size());
}

TEST(SampleCollege, HandwrittenRostersAreComplete) {
    EXPECT_EQ(
        names(900101),
        "Jordan Sam Priya Marcus Zoe Ava Mia Noah Diego Emma Liam Pia Nadia Theo Iris Omar Lena "
        "Ruben Cleo Tomas Freya Hugo Anya Mateo Sable Otis ");
    const auto intro = enrollments(900101);
    EXPECT_EQ(intro[0].userID, 5001);
    EXPECT_EQ(intro[0].grades, (Grades{.currentScore = 38, .currentGrade = "F"}));
    EXPECT_EQ(intro[0].lastActivityAt, test::noon - 10 * 86'400s - 7'200s);
    EXPECT_EQ(intro[0].totalActivityTime, 13 * 3600);
    EXPECT_FALSE(intro[1].lastActivityAt);
    EXPECT_EQ(intro[2].grades->currentGrade, "D−");

    const auto web = enrollments(900102);
    ASSERT_EQ(web.size(), 18U);
    EXPECT_EQ(web[16].userID, 5006);
    EXPECT_EQ(web[16].user->name, "Ava");
    EXPECT_EQ(web[17].userID, 5011);
    EXPECT_EQ(enrollments(900201).size(), 16U);
}

/// Computes the documented sequence independently.
TEST(SampleCollege, GeneratedRostersFollowTheSequence) {
    std::uint64_t state = 900103;
    const auto draw = [&state] {
        state = state * 6364136223846793005U + 1442695040888963407U;
        return state >> 33U;
    };
    const std::uint64_t size = 16 + draw() % 9;
    const std::uint64_t offset = draw() % 24;
    const std::uint64_t stride = std::array{5, 7, 11, 13}[draw() % 4];
    const std::uint64_t band = draw() % 44;
    const std::vector<std::string> pool{"Maya",  "Owen",  "Aisha", "Leo",  "Chloe", "Ravi",
                                        "Elena", "Jack",  "Nina",  "Theo", "Rosa",  "Finn",
                                        "Ivy",   "Cole",  "Dana",  "Milo", "Sana",  "Rhys",
                                        "Tessa", "Arjun", "Paige", "Hugo", "Wren",  "Idris"};

    const auto students = enrollments(900103);
    ASSERT_EQ(students.size(), size);
    for (std::size_t i = 0; i < students.size(); ++i) {
        EXPECT_EQ(students[i].userID, 5300 + 7 * (900103 % 97) + std::int64_t(i));
        EXPECT_EQ(students[i].user->name, pool[(offset + i * stride) % 24]);
        const auto away = wholeDaysBetween(*students[i].lastActivityAt, test::noon);
        EXPECT_TRUE(away >= 2 && away <= 19);
    }
    EXPECT_EQ(students[0].grades->currentScore, double(band) + 55);
    EXPECT_EQ(names(900103), names(900103));
    std::set<std::string> different;
    for (std::int64_t course = 900103; course <= 900106; ++course)
        different.insert(names(course));
    EXPECT_EQ(different.size(), 4U);
}

TEST(SampleCollege, EveryStudentHasEveryAssignment) {
    SampleCanvasClient college(test::noonClock);
    for (const std::int64_t course : {900101, 900102, 900103, 900201}) {
        std::vector<std::int64_t> assignments;
        for (const AssignmentGroup &group :
             runToEnd(college.fetchAssignmentGroups(course)).records) {
            for (const Assignment &assignment : group.assignments.value())
                assignments.push_back(assignment.id);
        }
        const auto students = enrollments(course);
        const auto submissions = runToEnd(college.fetchSubmissions(course)).records;
        ASSERT_EQ(submissions.size(), students.size() * assignments.size());
        for (std::size_t i = 0; i < submissions.size(); ++i) {
            const SubmissionSummary &submission = submissions[i];
            EXPECT_EQ(submission.userID, students[i / assignments.size()].userID);
            EXPECT_EQ(submission.assignmentID, assignments[i % assignments.size()]);
            const bool missing = submission.workflowState == "unsubmitted";
            EXPECT_EQ(submission.missing, missing);
            EXPECT_EQ(submission.score, missing ? std::nullopt : std::optional(8.5));
            EXPECT_EQ(submission.cachedDueDate, test::noon - 432'000s);
        }
    }
}

} // namespace
} // namespace ellwynd
