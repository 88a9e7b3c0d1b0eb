#include "app/roster/courseinsight.h"
#include "app/roster/selectionsummary.h"
#include "app/roster/studenthistory.h"
#include "support/core.h"
#include "support/instants.h"
#include "support/rosters.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

RiskRow missing(std::int64_t id, std::string_view level, std::vector<AssignmentRef> assignments) {
    RiskRow row = test::row(id, level);
    ReasonLine line{.text = "assignments missing"};
    for (AssignmentRef &assignment : assignments)
        line.links.push_back({{0, line.text.size()}, std::move(assignment)});
    row.reasonLines = {line};
    return row;
}

TEST(SelectionSummary, SaysWhatTheStudentsHaveInCommon) {
    const AssignmentRef essay{70, "Essay"};
    const AssignmentRef quiz{71, "Quiz"};
    RosterView roster;
    roster.outreach[{7, 1}] = {};
    const RiskRow ana = missing(1, "At Risk", {essay, quiz});
    const RiskRow ben = missing(2, "Watch", {quiz});
    const RiskRow cem = missing(3, "", {quiz});
    RiskRow elsewhere = missing(4, "Watch", {quiz});
    elsewhere.courseID = 8;
    for (const auto &[students, summary] :
         std::vector<std::pair<std::vector<RiskRow>, SelectionSummary>>{
             {{}, {}},
             {{ana, ben, cem},
              {"1 At Risk · 1 Watch · 1 without a flag", "1 not yet reached", {quiz}}},
             {{ana, elsewhere}, {"1 At Risk · 1 Watch", "1 not yet reached", {}}},
             {{ana, test::row(5, "At Risk")}, {"2 At Risk", "1 not yet reached", {}}}}) {
        EXPECT_EQ(selectionSummary(students, roster), summary) << summary.levels;
    }
    roster.remembersContacts = false;
    EXPECT_EQ(selectionSummary({ana, ben}, roster).notReached, "");
}

TEST(StudentHistory, KnowsWhoIsNewAndWhoseLevelIsAnotherThanRecordedToday) {
    const auto seen = [](std::int64_t student, int daysAgo, const char *level = "OK") {
        return test::entry(7, student, test::noon - std::chrono::days(daysAgo), level);
    };
    struct Row {
        const char *what;
        std::vector<RosterSnapshot> recorded;
        bool isNew;
        bool differs = false;
    };
    for (const Row &row : std::vector<Row>{
             {"nothing is recorded", {}, false},
             {"the course is new too", {seen(2, 3)}, false},
             {"others were there before", {seen(2, 9)}, true},
             {"seen lately for the first time", {seen(2, 9), seen(1, 6)}, true},
             {"was there before", {seen(2, 9), seen(1, 9)}, false},
             {"another course is older",
              {test::entry(8, 2, test::noon - std::chrono::days(90), "OK")},
              false},
             {"another level today", {seen(1, 1), seen(1, 0, "Concern")}, false, true},
             {"this level today", {seen(1, 1), seen(1, 0, "At Risk")}, false},
             {"another level yesterday", {seen(1, 2), seen(1, 1, "Concern")}, false}}) {
        test::Core core({}, test::noonClock);
        core.stores.history.fill(row.recorded);
        const StudentHistory history =
            studentHistory(test::row(1, "At Risk"), {}, core.stores, test::noon);
        EXPECT_EQ(history.isNew, row.isNew) << row.what;
        EXPECT_EQ(history.levelDiffers, row.differs) << row.what;
    }
    EXPECT_EQ(
        levelDiffersText(RiskLevel::atRisk, std::nullopt), "Now At Risk. Recorded today: OK.");
}

TEST(CourseInsight, IsShortOnOneLine) {
    CourseInsight insight;
    EXPECT_EQ(levelBrief(insight, RiskLevel::watch), "");
    insight.days = {{.counts = {1, 5, 4}}, {.counts = {9, 9, 9}}, {.counts = {3, 3, 4}}};
    EXPECT_EQ(levelBrief(insight, RiskLevel::atRisk), "3 At Risk ↑2");
    EXPECT_EQ(levelBrief(insight, RiskLevel::concern), "3 Concern ↓2");
    EXPECT_EQ(levelBrief(insight, RiskLevel::watch), "4 Watch");
    EXPECT_EQ(mostMissedText({.name = "Lab  1", .studentIDs = {5}}), "Lab 1 — 1 student");
}

} // namespace
} // namespace ellwynd
