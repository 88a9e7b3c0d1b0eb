#include "memory/dailylevels.h"
#include "memory/movement.h"
#include "memory/termtrend.h"
#include "support/instants.h"
#include "support/rosters.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using std::chrono::days;
using std::chrono::hours;
using test::at;
using test::entry;
using test::noon;
using test::row;

struct MovementTest : testing::Test {
    test::TemporaryFolder folder;
    UserDefaults defaults{folder.path() / "Preferences.json", {}};
    RosterHistory history{defaults, std::nullopt, test::noonClock};

    [[nodiscard]] std::vector<RosterChange>
    moved(std::vector<RosterSnapshot> entries, const std::vector<RiskRow> &rows) {
        history.fill(std::move(entries));
        return changes(history, rows, 7, noon);
    }
};

TEST_F(MovementTest, ComparesWithTheLastEarlierDay) {
    const Date yesterday = noon - days(1);
    const auto was = [&](std::int64_t student, const char *level) {
        return std::vector{entry(7, student, yesterday, level)};
    };
    const auto all = [](auto... each) { return std::vector<RosterSnapshot>{each...}; };
    for (const auto &[what, entries, now, text, summary] : std::vector<std::tuple<
             const char *, std::vector<RosterSnapshot>, const char *, std::string, std::string>>{
             {"slipped", was(1, "Watch"), "Concern", "slipped from Watch to Concern", "1 slipped"},
             {"newly flagged", was(1, "OK"), "Watch", "is newly Watch", "1 newly flagged"},
             {"joined flagged", was(9, "OK"), "Watch", "is newly Watch", "1 newly flagged"},
             {"an unknown level", was(1, "Purple"), "Watch", "is newly Watch", "1 newly flagged"},
             {"improved", was(1, "At Risk"), "Concern", "improved from At Risk to Concern",
              "1 improved"},
             {"not flagged now", was(1, "At Risk"), "OK", "is no longer flagged", "1 improved"},
             {"unchanged", was(1, "Watch"), "Watch", "", ""},
             {"joined without a flag", was(9, "OK"), "OK", "", ""},
             {"first visit", all(entry(8, 1, yesterday, "OK")), "At Risk", "", ""},
             {"the same day", all(entry(7, 1, noon - hours(6), "OK")), "At Risk", "", ""},
             {"at midnight", all(entry(7, 1, at("2026-09-24T05:00:00Z"), "OK")), "At Risk", "", ""},
             {"the latest entry counts, even from long ago",
              all(entry(7, 1, noon - days(60), "OK"), entry(7, 1, noon - days(30), "Concern"),
                  entry(7, 9, yesterday, "OK")),
              "Watch", "improved from Concern to Watch", "1 improved"},
             {"the first of equal instants",
              all(entry(7, 1, yesterday, "Concern"), entry(7, 1, yesterday, "OK")), "Watch",
              "improved from Concern to Watch", "1 improved"}}) {
        const auto change = moved(entries, {row(1, now)});
        ASSERT_EQ(change.empty(), text.empty()) << what;
        if (change.empty()) {
            EXPECT_EQ(summaryLine(change), std::nullopt) << what;
            continue;
        }
        EXPECT_EQ(changeText(change.front()), "Student 1 " + text) << what;
        EXPECT_EQ(isWorse(change.front()), summary != "1 improved") << what;
        EXPECT_EQ(summaryLine(change), "Since last time: " + summary) << what;
    }
}

TEST_F(MovementTest, WorseFirstThenNewThenImproved) {
    const Date yesterday = noon - days(1);
    const auto change = moved(
        {entry(7, 1, yesterday, "At Risk"), entry(7, 2, yesterday, "OK"),
         entry(7, 3, yesterday, "Watch"), entry(7, 4, yesterday, "Watch"),
         entry(7, 6, yesterday, "At Risk")},
        {row(1, "Watch"), row(2, "Watch"), row(3, "At Risk"), row(4, "At Risk"), row(5, "Concern"),
         row(6, "OK")});
    std::vector<std::int64_t> order;
    for (const RosterChange &each : change)
        order.push_back(each.studentID);
    EXPECT_THAT(order, testing::ElementsAre(3, 4, 2, 5, 1, 6));
    EXPECT_EQ(summaryLine(change), "Since last time: 2 slipped · 2 newly flagged · 2 improved");
    EXPECT_EQ(
        summaryLine({change[0], change[1], change[4]}), "Since last time: 2 slipped · 1 improved");
    EXPECT_EQ(change[0].previousDate, yesterday);
}

TEST_F(MovementTest, TermStoryDescribesTheLevels) {
    for (const auto &[levels, story] :
         std::vector<std::pair<std::vector<const char *>, std::string>>{
             {{"Watch"}, ""},
             {{"Watch", "Purple"}, ""},
             {{"Watch", "Watch"}, "Seen on 2 days between Sep 3 and Sep 4 — Watch throughout."},
             {{"Watch", "At Risk"},
              "Seen on 2 days between Sep 3 and Sep 4 — started Watch, now At Risk."},
             {{"At Risk", "Watch", "At Risk"},
              "Seen on 3 days between Sep 3 and Sep 5 — At Risk now, as at the start."},
             {{"OK", "Concern", "OK"},
              "Seen on 3 days between Sep 3 and Sep 5 — OK now, as at the start, worst Concern."},
             {{"Watch", "At Risk", "Concern"},
              "Seen on 3 days between Sep 3 and Sep 5 — started Watch, now Concern, worst At "
              "Risk."}}) {
        std::vector<RosterSnapshot> entries;
        for (std::size_t i = 0; i < levels.size(); ++i)
            entries.push_back(entry(7, 1, at("2026-09-03T15:00:00Z") + days(i), levels[i]));
        std::ranges::reverse(entries);
        history.fill(entries);
        const auto trend = termTrend(history, 7, 1, noon);
        EXPECT_EQ(trend ? termStory(*trend) : "", story);
    }
    // Entries later than today are kept but not shown.
    std::vector<RosterSnapshot> entries{
        entry(7, 1, noon - days(1), "Watch"), entry(7, 1, noon, "OK"),
        entry(7, 1, at("2026-09-25T05:00:00Z"), "At Risk"),
        entry(7, 1, noon + days(400), "At Risk")};
    history.fill(entries);
    EXPECT_EQ(termTrend(history, 7, 1, noon)->points.size(), 2U);
    entries.erase(entries.begin());
    history.fill(entries);
    EXPECT_EQ(termTrend(history, 7, 1, noon), std::nullopt);
    EXPECT_FALSE(hasEarlierVisit(history, 7, noon));
    EXPECT_TRUE(lastTwoWeeks(history, 7, noon).empty());

    EXPECT_TRUE(isJoined({noon, {}}, {noon + days(14), {}}));
    EXPECT_FALSE(isJoined({noon, {}}, {noon + days(14) + std::chrono::seconds(1), {}}));
}

TEST_F(MovementTest, TheSameLevelIsNoMovementAndMidnightIsToday) {
    const RosterChange same{
        .previousLevel = RecordedLevel(RiskLevel::watch), .currentLevel = RiskLevel::watch};
    EXPECT_EQ(movementKind(same), MovementKind::unchanged);
    EXPECT_FALSE(hasSlipped(same) || isNewlyFlagged(same) || hasImproved(same));
    history.fill({entry(7, 1, at("2026-09-24T05:00:00Z"), "Watch")});
    EXPECT_FALSE(hasEarlierVisit(history, 7, noon));
    history.fill({entry(7, 1, at("2026-09-24T04:59:59Z"), "Watch")});
    EXPECT_TRUE(hasEarlierVisit(history, 7, noon));
}

TEST_F(MovementTest, LevelTrendTextDescribesTwoWeeks) {
    history.fill(
        {entry(7, 1, noon - days(15), "At Risk"), entry(7, 1, noon - days(14), "Concern"),
         entry(7, 2, noon - days(14), "Watch"), entry(8, 1, noon - days(3), "At Risk"),
         entry(7, 1, noon - days(2), "Purple"), entry(7, 2, noon - days(2), "Concern"),
         entry(7, 1, noon, "At Risk")});
    const auto earlier = lastTwoWeeks(history, 7, noon);
    ASSERT_EQ(earlier.size(), 2U);
    EXPECT_EQ(earlier[0].counts, (LevelCounts{.concern = 1, .watch = 1}));
    EXPECT_EQ(earlier[1].counts, (LevelCounts{.concern = 1}));
    const DailyLevels today =
        levelsOf({row(1, "At Risk"), row(2, "Watch"), row(3, "Watch"), row(4, "OK")}, noon);
    EXPECT_EQ(
        levelTrendText(RiskLevel::atRisk, earlier, today), "At Risk: 1 now, up from 0 earlier.");
    EXPECT_EQ(
        levelTrendText(RiskLevel::concern, earlier, today), "Concern: 0 now, down from 1 earlier.");
    EXPECT_EQ(levelTrendText(RiskLevel::watch, {}, today), "Watch: 2 now, unchanged.");

    // Fourteen days are calendar days, also across a change of the clocks and close to midnight.
    for (const auto &[now, recorded, counts] :
         {std::tuple{"2026-11-09T05:30:00Z", "2026-10-25T05:00:00Z", true},
          {"2026-11-09T05:30:00Z", "2026-10-25T04:30:00Z", false},
          {"2026-11-09T05:30:00Z", "2026-11-08T05:59:59Z", true},
          {"2026-11-09T05:30:00Z", "2026-11-08T06:00:00Z", false},
          {"2026-03-15T05:30:00Z", "2026-03-01T06:30:00Z", true},
          {"2026-03-15T05:30:00Z", "2026-03-01T05:30:00Z", false}}) {
        history.fill({entry(7, 1, at(recorded), "Watch")});
        EXPECT_EQ(lastTwoWeeks(history, 7, at(now)).size(), counts ? 1U : 0U) << recorded;
    }

    // Two visits on one day, of which a change of the zone is the usual cause. The entries of one
    // are not in a row.
    for (const bool laterFirst : {false, true}) {
        std::vector<RosterSnapshot> visits{
            entry(7, 1, noon - days(2), "At Risk"), entry(7, 2, noon - days(2), "Watch"),
            entry(7, 1, noon - days(2) + hours(3), "Concern"),
            entry(8, 1, noon - days(2) + hours(3), "OK"),
            entry(7, 2, noon - days(2) + hours(3), "OK")};
        if (laterFirst)
            std::ranges::rotate(visits, visits.begin() + 2);
        history.fill(visits);
        const auto merged = lastTwoWeeks(history, 7, noon);
        ASSERT_EQ(merged.size(), 1U);
        EXPECT_EQ(merged[0].counts, (LevelCounts{.concern = 1}));
    }
}

} // namespace
} // namespace ellwynd
