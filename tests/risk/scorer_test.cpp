#include "risk/reasons.h"
#include "risk/scorer.h"
#include "support/classroom.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace ellwynd {
namespace {

using test::Classroom;
using test::sentences;
using testing::ElementsAre;

constexpr std::int64_t day = 86'400;

TEST(Scorer, ScoresASingleStudent) {
    const auto one = [](std::optional<double> score = {}) { return Classroom().student(1, score); };
    const std::initializer_list<std::int64_t> five{1, 2, 3, 4, 5};
    const std::initializer_list<std::int64_t> ten{11, 12, 13, 14, 15, 16, 17, 18, 19, 20};
    const auto late = [&](double score) { return one(score).missing(1, five).handedIn(1, ten); };
    const auto at = [](double passing, Classroom room) {
        room.passing = passing;
        return room;
    };
    constexpr auto fifth = "5 of 15 assignments missing";
    constexpr auto lowTime = "Low time in course (0h vs 10h median)";
    const std::optional<RiskLevel> none;
    using enum RiskLevel;
    for (const auto &[what, room, score, level, why] : std::vector<
             std::tuple<const char *, Classroom, double, std::optional<RiskLevel>, std::string>>{
             {"no data", one(), 0, none, ""},
             {"damped by fifteen points", late(85), 0.3 * 0.4, watch, fifth},
             {"damping ends at 15 points", late(100), 0.3 * 0.4, watch, fifth},
             {"damped by a third", late(75), 0.3 * 0.8, watch, fifth},
             {"six missing", one().missing(1, {1, 2, 3, 4, 5, 6}).handedIn(1, ten), 0.3, concern,
              "6 of 16 assignments missing"},
             {"far below passing", late(30), 0.3 + 0.25, atRisk,
              "5 of 15 assignments missing; Current score 30% (below 70%)"},
             {"exactly fifty", one(50), 0.5, atRisk, "Current score 50% (below 70%)"},
             {"just above fifty", one(50.1), 0.25 * (19.9 / 20), watch,
              "Current score 50% (below 70%)"},
             {"below passing", one(55.495), 0.25 * (14.505 / 20), watch,
              "Current score 55% (below 70%)"},
             {"barely below passing", one(69.6), 0.1, watch, "Current score 70% (below 70%)"},
             {"exactly passing", one(70).missing(1, {1}), 0.06, none, "1 of 1 assignments missing"},
             {"at a low passing score", at(45, one(45)), 0, none, ""},
             {"below fifty, passing", at(50, one(49.5)), 0.5, atRisk,
              "Current score 50% (below 50%)"},
             {"passing is truncated in the sentence", at(72.5, one(72.4)), 0.1, watch,
              "Current score 72% (below 72%)"},
             {"half of four", one(90).missing(1, {1, 2}).handedIn(1, {3, 4}), 0.5, atRisk,
              "2 of 4 assignments missing"},
             {"one of two", one(90).missing(1, {1}).handedIn(1, {2}), 0.06 * 0.4, none,
              "1 of 2 assignments missing"},
             {"two of five", one().missing(1, {1, 2}).handedIn(1, {3, 4, 5}), 0.12, watch,
              "2 of 5 assignments missing"},
             {"past due", one().overdue(1, {1, 2, 3, 4, 5, 6}), 0.1, watch,
              "6 past-due unsubmitted"},
             {"due now", one().overdue(1, {1}, 0), 0, none, ""},
             {"a strong grade damps past-due work", one(100).overdue(1, five), 0.1 * 0.4, none,
              "5 past-due unsubmitted"},
             {"a strong grade damps low time in course", one(100).student(2, {}, {}, 36'000),
              0.2 * 0.4, none, lowTime},
             {"less than a point between fifty and passing", at(50.5, late(50.2)), 0.25 * 0.3 + 0.3,
              concern, "5 of 15 assignments missing; Current score 50% (below 50%)"},
             {"rounding to zero", one(-0.2), 0.5, atRisk, "Current score 0% (below 70%)"}}) {
        const RiskRow scored = room.row(1);
        EXPECT_NEAR(scored.score, score, 1e-12) << what;
        EXPECT_EQ(scored.level, level) << what;
        EXPECT_EQ(sentences(scored), why) << what;
    }
}

TEST(Scorer, WorkIsSetOnceItIsDueHandedInOrScored) {
    const Date yesterday = test::noon - std::chrono::days(1);
    const std::string notSet = "1 of 1 assignments missing";
    const std::string isSet = "1 of 2 assignments missing";
    for (const auto &[submission, why] : std::vector<std::pair<SubmissionSummary, std::string>>{
             {{.workflowState = "unsubmitted"}, notSet},
             {{.workflowState = "unsubmitted", .cachedDueDate = test::noon}, notSet},
             {{.workflowState = "unsubmitted", .cachedDueDate = yesterday},
              isSet + "; 1 past-due unsubmitted"},
             {{.workflowState = "new_state", .cachedDueDate = yesterday}, isSet},
             {{.workflowState = "submitted", .cachedDueDate = yesterday}, isSet},
             {{.workflowState = "new_state"}, notSet},
             {{.workflowState = "unsubmitted", .score = 0}, isSet},
             {{.workflowState = "submitted"}, isSet},
             {{.workflowState = "graded"}, isSet},
             {{.workflowState = "pending_review"}, isSet}}) {
        Classroom room;
        room.student(1).missing(1, {1});
        room.submissions.push_back(submission);
        room.submissions.back().userID = 1;
        room.submissions.back().assignmentID = 2;
        EXPECT_EQ(sentences(room.row(1)), why)
            << submission.workflowState.name() << submission.cachedDueDate.has_value();
    }
}

TEST(Scorer, LevelsBeginExactlyAtTheirLimits) {
    EXPECT_EQ(levelOf(0.5), RiskLevel::atRisk);
    EXPECT_EQ(levelOf(std::nextafter(0.5, 0)), RiskLevel::concern);
    EXPECT_EQ(levelOf(0.25), RiskLevel::concern);
    EXPECT_EQ(levelOf(std::nextafter(0.25, 0)), RiskLevel::watch);
    EXPECT_EQ(levelOf(0.1), RiskLevel::watch);
    EXPECT_EQ(levelOf(std::nextafter(0.1, 0)), std::nullopt);
    EXPECT_EQ(levelOf(std::numeric_limits<double>::quiet_NaN()), std::nullopt);

    // Low grade 0.1 and inactivity 0.15 together; missing work 0.3 and no time in course 0.2.
    Classroom room;
    room.student(1, 62, 14 * day, 3600).student(2, 75, 0, 3600).student(3, 75, 0, 3600);
    EXPECT_EQ(room.row(1).score, 0.25);
    EXPECT_EQ(room.row(1).level, RiskLevel::concern);
    Classroom idle;
    idle.student(1, 70, 0).student(2, 70, 0, 3600);
    idle.missing(1, {1, 2, 3, 4, 5}).handedIn(1, {6, 7, 8, 9, 10, 11});
    EXPECT_EQ(idle.row(1).score, 0.5);
    EXPECT_EQ(idle.row(1).level, RiskLevel::atRisk);
}

TEST(Scorer, WeightsMissingWorkByItsShare) {
    for (const auto &[share, score, percent] :
         {std::tuple{0.2, 0.3, "20%"},
          {0.9, 0.3, "90%"},
          {0.0049, 0.3 * 0.0049 / 0.2, "under 1%"},
          {0.005, 0.3 * 0.005 / 0.2, "1%"},
          {0.125, 0.1875, "13%"}}) {
        Classroom room;
        room.student(1).missing(1, {1}).handedIn(1, {2, 3, 4, 5});
        room.weighting = GradeWeighting{.sharesByAssignment = {{1, share}}};
        EXPECT_NEAR(room.row(1).score, score, 1e-12);
        EXPECT_EQ(
            sentences(room.row(1)),
            std::string("1 of 5 assignments missing — ") + percent + " of the grade");
    }
    // An assignment that a weighting lacks has no weight. Without a weighting it is counted.
    Classroom room;
    room.student(1).missing(1, {1, 2}).handedIn(1, {3, 4, 5});
    room.weighting = GradeWeighting{};
    EXPECT_EQ(room.row(1).score, 0);
    room.weighting.reset();
    EXPECT_NEAR(room.row(1).score, 0.3 * 2 / 5, 1e-12);
}

TEST(Scorer, MissingWorkIsCountedAloneIfNothingIsSet) {
    const std::vector<std::int64_t> missing{1, 2};
    EXPECT_EQ(explain({.missing = missing, .names = {}}).at(0).text, "2 missing assignments");
}

TEST(Scorer, ReasonsLinkToAssignmentsAndGrades) {
    Classroom room;
    room.student(1, 60).missing(1, {9, 8}).handedIn(1, {1, 2, 3});
    room.names = {{9, "Essay — ünï"}};
    const RiskRow row = room.row(1);
    ASSERT_EQ(row.reasonLines.size(), 2U);
    const auto whole = [&](std::size_t line) {
        return ReasonLink::Range{0, row.reasonLines[line].text.size()};
    };
    const AssignmentRef essay{9, "Essay — ünï"};
    const AssignmentRef other{8, "Assignment 8"};
    EXPECT_THAT(
        row.reasonLines[0].links,
        ElementsAre(ReasonLink{whole(0), essay}, ReasonLink{whole(0), other}));
    EXPECT_THAT(row.reasonLines[1].links, ElementsAre(ReasonLink{whole(1), GradesTarget{}}));
    EXPECT_THAT(missingAssignments(row), ElementsAre(essay, other));
}

TEST(Scorer, InactivityIsMeasuredAgainstTheClass) {
    for (const auto &[what, away, classAway, signal, why] : std::vector<std::tuple<
             const char *, std::optional<std::int64_t>, std::int64_t, double, std::string>>{
             {"seven days behind", 10 * day, 3 * day, 0, ""},
             {"eight days behind", 11 * day, 3 * day, 1.0 / 7, "No recent activity (11 days)"},
             {"a second less than eight", 11 * day - 1, 3 * day, 0, ""},
             {"fourteen behind", 17 * day, 3 * day, 1, "No recent activity (17 days)"},
             {"thirty behind", 33 * day, 3 * day, 1, "No recent activity (33 days)"},
             {"a quiet class", 20 * day, 15 * day, 0, ""},
             {"ahead of a quiet class", 0, 20 * day, 0, ""},
             {"no recorded activity", std::nullopt, 3 * day, 1, "No recorded activity"},
             {"class quiet for 30 days", std::nullopt, 30 * day, 1, "No recorded activity"},
             {"class quiet for longer", std::nullopt, 30 * day + 1, 0, ""},
         }) {
        Classroom room;
        room.student(1, std::nullopt, away);
        for (int other = 2; other <= 6; ++other)
            room.student(other, std::nullopt, classAway);
        EXPECT_NEAR(room.row(1).score, 0.15 * signal, 1e-12) << what;
        EXPECT_EQ(sentences(room.row(1)), why) << what;

        room.termEndsAt = test::noon - std::chrono::microseconds(1);
        EXPECT_EQ(room.row(1).score, 0) << what;
        room.termEndsAt = test::noon;
        EXPECT_NEAR(room.row(1).score, 0.15 * signal, 1e-12) << what;
    }
    Classroom off;
    off.student(1, std::nullopt, 90 * day).student(2).student(3, std::nullopt, 0);
    off.inactivityDays = 0;
    off.student(4, std::nullopt, 0);
    EXPECT_EQ(off.row(1).score, 0);
    EXPECT_NEAR(off.row(2).score, 0.15, 1e-12);
    Classroom oneDay;
    oneDay.student(1, std::nullopt, 2 * day).student(2, std::nullopt, 0).student(3, {}, 0);
    oneDay.inactivityDays = 1;
    EXPECT_NEAR(oneDay.row(1).score, 0.15, 1e-12);
}

TEST(Scorer, TimeInCourseCountsBelowHalfTheMedian) {
    for (const auto &[time, signal, why] :
         std::vector<std::tuple<std::optional<std::int64_t>, double, std::string>>{
             {18'000, 0, ""},
             {14'400, 0.04, ""},
             {14'399, 0.2 * 2 * (0.5 - 14'399 / 36'000.0), "Low time in course (4h vs 10h median)"},
             {9'000, 0.1, "Low time in course (3h vs 10h median)"},
             {0, 0.2, "Low time in course (0h vs 10h median)"},
             {-3'600, 0.2, "Low time in course (-1h vs 10h median)"},
             {std::nullopt, 0.2, "Low time in course (0h vs 10h median)"}}) {
        Classroom room;
        room.student(1, std::nullopt, std::nullopt, time);
        for (int other = 2; other <= 4; ++other)
            room.student(other, std::nullopt, std::nullopt, 36'000);
        const RiskRow scored = room.row(1);
        EXPECT_NEAR(scored.score, signal, 1e-12) << time.value_or(-1);
        EXPECT_EQ(sentences(scored), why);
    }
    EXPECT_EQ(Classroom().student(1).student(2, std::nullopt, std::nullopt, 0).row(1).score, 0);
    EXPECT_EQ(Classroom().student(1).student(2, std::nullopt, std::nullopt, 1).row(1).score, 0.2);
}

TEST(Scorer, ClassWideMissingWorkDoesNotCount) {
    Classroom room;
    for (int id = 1; id <= 5; ++id)
        room.student(id);
    room.missing(1, {1, 2}).missing(2, {1}).missing(3, {1}).handedIn(1, {3, 4, 5});
    room.overdue(4, {1});
    EXPECT_EQ(room.row(1).missingCount, 1);
    EXPECT_EQ(sentences(room.row(1)), "1 of 4 assignments missing");
    EXPECT_EQ(sentences(room.row(2)), "");
    EXPECT_EQ(room.row(4).score, 0);
}

TEST(Scorer, SectionsOfAStudentAreMerged) {
    Classroom room;
    room.student(1, 88, 3 * day, 7'200).student(1, 40, 1 * day, 18'000).student(1);
    room.enrollments[0].user = EnrolledUser{.id = 1, .name = "Ana"};
    const auto rows = room.score();
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].name, "Ana");
    EXPECT_EQ(rows[0].currentScore, 88);
    EXPECT_EQ(rows[0].lastActivityAt, test::noon - std::chrono::days(1));
    EXPECT_EQ(rows[0].totalActivityTime, 18'000);

    Classroom ungradedFirst;
    ungradedFirst.student(1).student(1, 40).student(1, 88);
    EXPECT_EQ(ungradedFirst.row(1).currentScore, 40) << "of the first section that has grades";
}

TEST(Scorer, EqualScoresKeepTheirOrder) {
    Classroom room;
    std::vector<std::int64_t> expected{1};
    std::vector<std::int64_t> fine;
    // So many that an unstable sort reorders them.
    for (std::int64_t student = 80; student > 1; --student) {
        room.student(student, student % 3 == 0 ? 55 : 90);
        (student % 3 == 0 ? expected : fine).push_back(student);
    }
    room.student(1, 20);
    expected.insert(expected.end(), fine.begin(), fine.end());
    std::vector<std::int64_t> order;
    for (const RiskRow &row : room.score())
        order.push_back(row.id);
    EXPECT_EQ(order, expected);
}

TEST(Scorer, StudentNamesFallBack) {
    Classroom room;
    room.student(1).student(2).student(3);
    room.enrollments[0].user = EnrolledUser{.id = 1, .name = "", .sortableName = "Ruiz, Ana"};
    room.enrollments[1].user = EnrolledUser{.id = 2};
    EXPECT_EQ(room.row(1).name, "Ruiz, Ana");
    EXPECT_EQ(room.row(2).name, "Student 2");
    EXPECT_EQ(room.row(3).name, "Student 3");
    EXPECT_EQ(room.row(3).courseName, "Bio");
    EXPECT_EQ(room.row(3).courseID, 4021);
}

} // namespace
} // namespace ellwynd
