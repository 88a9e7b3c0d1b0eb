#include "app/roster/rostertexts.h"
#include "app/roster/termroster.h"
#include "canvas/records/termgroups.h"
#include "support/instants.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using test::at;
using testing::ElementsAre;

TEST(RosterTexts, FormatFigures) {
    const Date now = at("2026-09-24T12:00:00Z"); // seven in the morning in Chicago
    EXPECT_EQ(lastActiveText(std::nullopt, now), "never");
    EXPECT_EQ(stampNote(now, false, now), "");
    EXPECT_EQ(stampNote(at("2026-09-24T04:59:59Z"), true, now), "yesterday · refreshing…");
    EXPECT_EQ(stampNote(at("2026-09-20T12:00:00Z"), false, now), "Sun, Sep 20");
    EXPECT_EQ(lastActiveText(at("2026-09-24T05:00:00Z"), now), "today");
    EXPECT_EQ(lastActiveText(at("2026-09-24T04:59:59Z"), now), "yesterday");
    EXPECT_EQ(lastActiveText(at("2026-09-14T12:00:00Z"), now), "10 days ago");
    // The day before yesterday, but less than 48 hours ago.
    EXPECT_EQ(lastActiveText(at("2026-09-23T04:59:00Z"), now), "1 day ago");
    EXPECT_EQ(lastActiveText(at("2026-09-14T23:00:00Z"), now), "9 days ago");
    EXPECT_EQ(lastActiveText(at("2026-09-30T12:00:00Z"), now), "today");

    RiskRow row;
    EXPECT_EQ(scoreAndGradeText(row), "");
    row.currentGrade = "D−";
    EXPECT_EQ(scoreAndGradeText(row), "D−");
    row.currentScore = 72.5;
    EXPECT_EQ(scoreAndGradeText(row), "73% · D−");
    const OutreachOutcome written{.contactedAt = at("2026-09-20T12:00:00Z")};
    EXPECT_EQ(figuresText(row, nullptr, now), "73% · D− · never");
    EXPECT_EQ(figuresText(row, &written, now), "73% · D− · never · Sep 20");
    row.name = "Ana  Zed";
    row.reasonLines = {{.text = "One"}, {.text = "Two"}};
    EXPECT_EQ(rowDescription(row), "Ana Zed. One · Two");
    EXPECT_EQ(timeInCourseText(5400), "2h");
    EXPECT_EQ(timeInCourseText(0), "–");
    EXPECT_EQ(moreText(3), "3 more");
    EXPECT_EQ(moreAccessibleText(3), "3 more missing, press to show");
}

TEST(TermGroups, AreSortedNewestFirst) {
    const auto course = [](std::int64_t id, std::optional<Term> term) {
        return Course{.id = id, .term = std::move(term)};
    };
    const Term spring{.id = 1, .name = "Spring", .startAt = at("2026-01-05T00:00:00Z")};
    const Term fall{.id = 2, .name = "Fall", .startAt = at("2026-09-01T00:00:00Z")};
    const Term twin{.id = 3, .startAt = at("2026-09-01T00:00:00Z")};
    const Term undated{.id = 9, .name = "Default"};
    const auto groups = groupByTerm(
        {course(10, std::nullopt), course(11, spring), course(12, undated), course(13, fall),
         course(14, spring), course(15, twin)});
    std::vector<std::string> titles;
    for (const TermGroup &group : groups)
        titles.push_back(title(group));
    EXPECT_THAT(titles, ElementsAre("Term 3", "Fall", "Spring", "Default", "Other courses"));
    EXPECT_EQ(groups[2].courses[0].id, 11);
    EXPECT_EQ(groups[2].courses[1].id, 14);
    EXPECT_EQ(groups[4].id(), std::nullopt);
}

TEST(TermRows, ContainTheFlaggedStudentsOfEveryCourse) {
    ScoredCourse first;
    ScoredCourse second;
    first.rows = {
        {.id = 1, .score = 0.6, .level = RiskLevel::atRisk, .courseID = 10},
        {.id = 2, .score = 0.2, .level = RiskLevel::watch, .courseID = 10},
        {.id = 3, .score = 0, .courseID = 10}};
    second.rows = {
        {.id = 1, .score = 0.7, .level = RiskLevel::atRisk, .courseID = 20},
        {.id = 2, .score = 0.2, .level = RiskLevel::watch, .courseID = 20}};
    const std::vector<const ScoredCourse *> courses{&first, &second};
    std::vector<std::pair<std::int64_t, std::int64_t>> keys;
    for (const RiskRow &row : termRows(courses))
        keys.emplace_back(row.courseID, row.id);
    EXPECT_THAT(
        keys, ElementsAre(std::pair(20, 1), std::pair(10, 1), std::pair(10, 2), std::pair(20, 2)));
}

} // namespace
} // namespace ellwynd
