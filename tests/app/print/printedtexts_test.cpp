#include "app/print/printedtexts.h"
#include "support/instants.h"
#include "support/rosters.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using test::noon;
using test::row;
using testing::ElementsAre;

TEST(PrintedTexts, ARosterHasItsRowsAsOnTheScreen) {
    RiskRow first = row(1, "Watch");
    first.name = "Ada\n\tL.";
    first.currentScore = 61.5;
    first.currentGrade = "D";
    first.reasonLines = {{.text = "One"}, {.text = "Two"}};
    RiskRow last = row(3, "At Risk");
    last.name = std::string(300, 'x');
    last.lastActivityAt = noon - std::chrono::days(3);
    RosterView roster{.title = "Bio\n<b>", .courseID = 7, .rows = {first, row(2, ""), last}};
    roster.outreach[{7, 1}] = {
        .contactedAt = noon - std::chrono::days(9),
        .levelThen = {},
        .levelNow = RiskLevel::watch,
        .daysSince = 9};
    roster.courseCodes[7] = "BIO 1";
    PrintedRoster printed = printedRoster(roster, true, noon);
    EXPECT_EQ(printed.title, "Bio <b>");
    EXPECT_EQ(printed.subtitle, "2 flagged students · printed 2026-09-24");
    ASSERT_EQ(printed.rows.size(), 2U);
    EXPECT_EQ(printed.rows[0].name, "Ada L.");
    EXPECT_EQ(printed.rows[0].figures, "62% · D · last active never · contacted Sep 15, no change");
    EXPECT_EQ(printed.rows[0].reasons, "One · Two");
    EXPECT_EQ(printed.rows[1].name, std::string(200, 'x') + "…");
    EXPECT_EQ(printed.rows[1].figures, "last active 3 days ago");
    EXPECT_EQ(printedRoster(roster, false, noon).subtitle, "3 students · printed 2026-09-24");
    roster.courseID.reset();
    printed = printedRoster(roster, true, noon);
    EXPECT_EQ(printed.rows[1].figures, "BIO 1 · last active 3 days ago");
}

TEST(PrintedTexts, AStudentHasFiguresReasonsAndHistory) {
    RiskRow student = row(1, "Watch", 1);
    student.courseName = "Bio";
    EXPECT_EQ(printedStudent(student, {}, noon).reasons.front().text, "No reasons for concern.");
    student.reasonLines = {
        {.text = "1 missing", .links = {{{}, AssignmentRef{5, "Lab\n1"}}}},
        {.text = "Score", .role = ReasonRole::currentScore}};
    StudentHistory history;
    history.trend = TermTrend{{{noon - std::chrono::days(2), {}}, {noon, RiskLevel::concern}}};
    history.levelDiffers = true;
    history.outreach = OutreachOutcome{
        .contactedAt = noon, .levelThen = {}, .levelNow = RiskLevel::watch, .daysSince = 0};
    const PrintedStudent printed = printedStudent(student, history, noon);
    EXPECT_EQ(printed.subtitle, "Bio · printed 2026-09-24");
    std::vector<std::string> figures;
    for (const StudentFigure &figure : printed.figures)
        figures.push_back(std::string(figure.name) + ": " + figure.value);
    EXPECT_THAT(
        figures, ElementsAre("Score: –", "Missing: 1", "Last active: never", "Time in course: –"));
    EXPECT_THAT(printed.reasons[0].assignments, ElementsAre("Lab 1"));
    EXPECT_TRUE(printed.reasons[1].assignments.empty());
    EXPECT_EQ(printed.story.size(), 2U);
    EXPECT_EQ(printed.wroteAt, noon);
    EXPECT_EQ(printed.outreach, "Wrote today — still Watch");
}

} // namespace
} // namespace ellwynd
