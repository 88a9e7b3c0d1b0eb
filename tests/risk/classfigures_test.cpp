#include "risk/classfigures.h"
#include "risk/gradeweighting.h"
#include "risk/levelcounts.h"
#include "risk/missedwork.h"
#include "support/classroom.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using test::Classroom;
using testing::ElementsAre;
using testing::Pair;

ClassFigures figuresOf(const Classroom &room) {
    return classFigures(room.enrollments, room.submissions, std::nullopt, test::noon);
}

TEST(ClassFigures, ExcludeAssignmentsThatSixtyPercentAreMissing) {
    for (const auto &[roster, missing, isExcluded] :
         {std::tuple{4, 4, false},
          {5, 2, false},
          {5, 3, true},
          {7, 4, false},
          {7, 5, true},
          {20, 11, false},
          {20, 12, true},
          {10, 6, true}}) {
        Classroom room;
        for (std::int64_t student = 1; student <= roster; ++student)
            room.student(student);
        for (std::int64_t student = 1; student <= missing; ++student)
            room.missing(student, {7, 7});
        EXPECT_EQ(figuresOf(room).excludedAssignments.contains(7), isExcluded)
            << missing << " of " << roster;
    }
}

TEST(ClassFigures, TakeMedians) {
    for (const auto &[times, median] : std::vector<std::pair<std::vector<std::int64_t>, double>>{
             {{}, 0}, {{0, -5, 0}, 0}, {{9, 1, 5}, 5}, {{9, 1, 5, 0, 7}, 6}, {{3, 4}, 3.5}}) {
        Classroom room;
        for (const std::int64_t time : times)
            room.student(std::int64_t(room.enrollments.size()), std::nullopt, std::nullopt, time);
        EXPECT_EQ(figuresOf(room).medianActivityTime, median);
    }
    Classroom three;
    three.student(1, std::nullopt, 100).student(2, std::nullopt, 500).student(3);
    EXPECT_EQ(figuresOf(three).medianLastActivity, test::noon - std::chrono::seconds(100));
    three.student(4, std::nullopt, 300);
    EXPECT_EQ(figuresOf(three).medianLastActivity, test::noon - std::chrono::seconds(300));
    EXPECT_EQ(figuresOf({}).medianLastActivity, std::nullopt);
}

TEST(ClassFigures, QuietDaysAreWholeAndNeverNegative) {
    for (const auto &[seconds, days] : {std::pair{86'399, 0}, {86'400, 1}, {-90'000, 0}})
        EXPECT_EQ(figuresOf(Classroom().student(1, std::nullopt, seconds)).quietDays, days);
    EXPECT_EQ(figuresOf(Classroom().student(1)).quietDays, 0);
}

TEST(LevelCounts, CountFlaggedStudentsAndNameTheWorst) {
    using enum RiskLevel;
    for (const auto &[levels, expected, flagged, worst, max] : std::vector<std::tuple<
             std::vector<std::optional<RiskLevel>>, LevelCounts, std::int64_t,
             std::optional<RiskLevel>, std::int64_t>>{
             {{{}, {}}, {}, 0, {}, 0},
             {{watch}, {0, 0, 1}, 1, watch, 1},
             {{{}, concern, watch, concern}, {0, 2, 1}, 3, concern, 2},
             {{watch, atRisk, watch, watch, concern}, {1, 1, 3}, 5, atRisk, 3}}) {
        LevelCounts counts;
        for (const auto &level : levels)
            counts.add(level);
        EXPECT_EQ(counts, expected);
        EXPECT_EQ(counts.flagged(), flagged);
        EXPECT_EQ(counts.worst(), worst);
        EXPECT_EQ(counts.max(), max);
    }
}

TEST(MissedWork, ListsTheMostMissedFirst) {
    Classroom room;
    room.missing(9, {2, 1}).missing(3, {2, 1, 4}).missing(9, {2}).missing(1, {5, 6, 7});
    room.handedIn(1, {1, 2}).overdue(1, {8});
    const auto work =
        missedWork(room.submissions, 3, {{1, "b"}, {2, "a"}, {4, "Z"}, {5, ""}, {6, "Z"}});
    std::vector<std::string> names;
    for (const MissedAssignment &assignment : work)
        names.push_back(assignment.name);
    EXPECT_THAT(names, ElementsAre("a", "b", "", "Assignment 7", "Z", "Z"));
    EXPECT_EQ(work[4].id, 4) << "equal names are in the order of their ids";
    EXPECT_THAT(work[0].studentIDs, ElementsAre(3, 9));
    EXPECT_EQ(work[0].rosterSize, 3);
    EXPECT_FALSE(work[0].isClassWide);

    Classroom wide;
    wide.missing(1, {8}).missing(2, {8}).missing(3, {8});
    EXPECT_TRUE(missedWork(wide.submissions, 5, {})[0].isClassWide);
}

TEST(MissedWork, SummaryAndDescription) {
    EXPECT_EQ(missedWorkSummary(1, 1), "1 assignment with missing work, out of 1 student");
    EXPECT_EQ(missedWorkSummary(2, 26), "2 assignments with missing work, out of 26 students");
    EXPECT_EQ(
        missedWorkSummary(0, 2),
        "0 assignments with missing work, out of 2 students — nobody is missing anything");
    MissedAssignment essay{.name = "Essay", .studentIDs = {1}};
    EXPECT_EQ(missedWorkDescription(essay), "Essay, missing for 1 student");
    essay.studentIDs = {1, 2};
    essay.isClassWide = true;
    EXPECT_EQ(
        missedWorkDescription(essay), "Essay, missing for 2 students, excluded from risk scores");
}

Assignment worth(std::int64_t id, std::optional<double> points) {
    return {.id = id, .pointsPossible = points};
}

AssignmentGroup group(std::optional<double> weight, std::vector<Assignment> assignments) {
    return {.id = 1, .groupWeight = weight, .assignments = std::move(assignments)};
}

TEST(GradeWeighting, SharesFollowWeightsOrPoints) {
    Assignment hidden = worth(8, 100);
    hidden.published = false;
    Assignment omitted = worth(9, 100);
    omitted.omitFromFinalGrade = true;
    const std::vector weighted{
        group(30, {worth(1, 10), worth(2, 30), hidden}),
        group(10, {worth(3, 0), worth(4, std::nullopt)}),
        group(0, {worth(5, 10)}),
        group(std::nullopt, {worth(6, 10), omitted}),
        group(20, {}),
        {.id = 2}};
    const std::unordered_map<std::int64_t, double> byWeight{
        {1, 0.5 * 0.25}, {2, 0.5 * 0.75}, {3, 1.0 / 6 / 2}, {4, 1.0 / 6 / 2}};
    const std::unordered_map<std::int64_t, double> byPoints{
        {1, 10.0 / 60}, {2, 0.5}, {3, 0}, {4, 0}, {5, 10.0 / 60}, {6, 10.0 / 60}};
    for (const auto &[what, groups, applies, expected] : std::vector<std::tuple<
             const char *, std::vector<AssignmentGroup>, std::optional<bool>,
             std::unordered_map<std::int64_t, double>>>{
             {"weights", weighted, true, byWeight},
             {"weights without the course's flag", weighted, std::nullopt, byWeight},
             {"weights switched off", weighted, false, byPoints},
             {"no weights",
              {group(0, {worth(1, 0.2), worth(2, 0.6)})},
              true,
              {{1, 0.25}, {2, 0.75}}},
             {"weights and points below one",
              {group(0.25, {worth(1, 0.2), worth(2, 0.6)}), group(0.25, {worth(3, 5)})},
              true,
              {{1, 0.125}, {2, 0.375}, {3, 0.5}}},
             {"no points", {group(std::nullopt, {worth(1, 0)})}, true, {}},
             {"no groups", {}, std::nullopt, {}},
         }) {
        const auto shares = gradeWeighting(groups, applies).sharesByAssignment;
        ASSERT_EQ(shares.size(), expected.size()) << what;
        for (const auto &[id, share] : expected)
            EXPECT_NEAR(shares.at(id), share, 1e-12) << what << " " << id;
    }
}

TEST(GradeWeighting, NamesEveryAssignmentThatHasAName) {
    Assignment hidden{.id = 2, .name = "Hidden", .published = false};
    const auto weighting =
        gradeWeighting({group(std::nullopt, {{.id = 1, .name = "Essay"}, hidden, {.id = 3}})}, {});
    EXPECT_THAT(
        weighting.namesByAssignment,
        testing::UnorderedElementsAre(Pair(1, "Essay"), Pair(2, "Hidden")));
    EXPECT_EQ(assignmentName(weighting.namesByAssignment, 3), "Assignment 3");
}

} // namespace
} // namespace ellwynd
