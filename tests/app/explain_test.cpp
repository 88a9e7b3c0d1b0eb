#include "app/explain/explaintexts.h"
#include "app/explain/lookback.h"
#include "app/explain/othercourses.h"
#include "app/explain/thresholdeffect.h"
#include "app/mainwindowcontroller.h"
#include "preferences/coursesettings.h"
#include "risk/levelcounts.h"
#include "support/core.h"
#include "support/instants.h"
#include "support/rosters.h"

#include <gmock/gmock.h>

#include <random>

namespace ellwynd {
namespace {

using std::chrono::days;
using test::noon;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int64_t introToProgramming = 900101;

SharedCourse course(
    std::int64_t id, std::vector<RiskRow> rows, std::int64_t term = 1,
    std::optional<Date> endsAt = std::nullopt) {
    for (RiskRow &row : rows)
        row.courseID = id;
    ScoredCourse scored{
        .course = {.id = id, .name = "Course " + std::to_string(id), .term = Term{.id = term}},
        .rows = std::move(rows),
        .fetchedAt = noon,
        .termEndsAt = endsAt};
    return std::make_shared<const ScoredCourse>(std::move(scored));
}

TEST(Explain, TheEffectLineSaysHowManyAndWho) {
    // The level of each student before and after.
    using Levels = std::vector<std::pair<const char *, const char *>>;
    for (const auto &[what, levels, thresholds, line, details] : std::vector<
             std::tuple<const char *, Levels, CourseThresholds, const char *, const char *>>{
             {"nothing changes",
              {{"Watch", "Watch"}, {"OK", "OK"}},
              {60, 7},
              "At 60 %: 1 flagged, as before.",
              ""},
             {"fewer",
              {{"At Risk", "Concern"}, {"Watch", "OK"}, {"Watch", "Watch"}},
              {62.5, 7},
              "At 62.5 %: 2 flagged instead of 3.",
              "Now Concern: Student 1. No longer flagged: Student 2."},
             {"more, by the other threshold",
              {{"OK", "Watch"}},
              {70, 1},
              "At 1 day: 1 flagged instead of 0.",
              "Now Watch: Student 1."},
             {"both, with more names than fit",
              {6, {"OK", "At Risk"}},
              {80, 14},
              "At 80 % and 14 days: 6 flagged instead of 0.",
              "Now At Risk: Student 1, Student 2, Student 3, Student 4 and 2 more."}}) {
        std::vector<RiskRow> rowsBefore;
        std::vector<RiskRow> rowsAfter;
        std::int64_t id = 0;
        for (const auto &[from, to] : levels) {
            rowsBefore.push_back(test::row(++id, from));
            rowsAfter.insert(rowsAfter.begin(), test::row(id, to));
        }
        ScoredCourse before;
        ScoredCourse after;
        before.rows = rowsBefore;
        after.rows = rowsAfter;
        const ThresholdEffect effect = thresholdEffect(before, after);
        EXPECT_EQ(effectLine(effect, {}, thresholds), line) << what;
        EXPECT_EQ(effectDetails(effect), details) << what;
    }
}

TEST(Explain, TheEffectIsWhatThenHappens) {
    test::Core core{{{"SampleData", true}}, test::noonClock};
    MainWindowController controller{core.defaults, core.connector, core.stores,
                                    core.trends,   core.sinks,     test::noonClock};
    controller.refresh();
    controller.select(CourseSelection{introToProgramming});
    const auto levelsOf = [](const auto &rows) {
        std::map<std::int64_t, std::optional<RiskLevel>> levels;
        for (const RiskRow &row : rows)
            levels.emplace(row.id, row.level);
        return levels;
    };
    std::mt19937 random(7);
    std::size_t changes = 0;
    for (int i = 0; i < 200; ++i) {
        const SharedCourse before = controller.loadedRosters().find(introToProgramming);
        ASSERT_NE(before, nullptr);
        CourseThresholds then = before->thresholds;
        then.passingScore = double(40 + random() % 55);
        then.inactivityDays = std::int64_t(1 + random() % 30);
        const ThresholdEffect effect = thresholdEffect(*before, rescored(*before, then));
        core.defaults.update(
            {{courseSettings::key(introToProgramming, courseSettings::passingScore),
              then.passingScore},
             {courseSettings::key(introToProgramming, courseSettings::inactivityDays),
              then.inactivityDays}});
        auto expected = levelsOf(before->rows);
        for (const ThresholdEffect::Change &change : effect.changes) {
            EXPECT_EQ(expected.at(change.student.studentID), change.from);
            expected[change.student.studentID] = change.to;
        }
        EXPECT_EQ(levelsOf(controller.roster().rows), expected) << i;
        EXPECT_EQ(effect.flaggedAfter, levelCounts(controller.roster().rows).flagged());
        changes += effect.changes.size();
    }
    EXPECT_GT(changes, 200U);
}

TEST(Explain, OtherCoursesOfTheStudentAreFound) {
    RosterCache cache;
    cache.store(course(1, {test::row(5, "Watch"), test::row(6, "At Risk")}));
    cache.store(course(2, {test::row(5, "Concern"), test::row(7, "Watch")}));
    cache.store(course(3, {test::row(5, "OK")}));
    cache.store(course(4, {test::row(5, "At Risk")}, 2, noon + days(9)));
    cache.store(course(8, {test::row(5, "At Risk")}, 3, noon - days(9)));
    std::vector<std::string> texts;
    RiskRow row = test::row(5, "Watch");
    row.courseID = 1;
    for (const OtherCourse &other : otherCourses(row, cache))
        texts.push_back(alsoInText(other));
    EXPECT_THAT(texts, ElementsAre("Also in Course 4: At Risk", "Also in Course 2: Concern"))
        << "neither where all is well nor in a term that has ended";
    row.id = 6;
    EXPECT_THAT(otherCourses(row, cache), IsEmpty());
}

TEST(Explain, TheLookBackIsAGridOfStudentsAndDays) {
    test::Core core{{}, test::noonClock};
    core.stores.history.fill(
        {test::entry(7, 1, noon - days(20), "Watch"), test::entry(7, 9, noon - days(20), "OK"),
         test::entry(7, 8, noon - days(20), "At Risk"),
         test::entry(7, 1, noon - days(10), "At Risk"), test::entry(7, 2, noon - days(10), "OK"),
         test::entry(8, 1, noon - days(5), "OK"), test::entry(7, 1, noon, "Watch"),
         test::entry(7, 2, noon, "strange")});
    core.stores.contacts.noteContacts(7, {1}, noon - days(10));
    core.stores.contacts.noteContacts(7, {8}, noon - days(20));
    const std::vector<RiskRow> roster{test::row(1, "Watch"), test::row(2, "OK")};
    const LookBack look = lookBack(7, roster, core.stores.history, core.stores.contacts);
    std::vector<std::string> lines;
    for (const LookBack::Row &row : look.rows) {
        std::string line = row.name + ":";
        for (const RecordedLevel &level : row.levels)
            line += level.isKnown() ? std::string(levelLetter(level)) : ".";
        lines.push_back(line);
    }
    EXPECT_EQ(look.days.size(), 3U);
    EXPECT_THAT(
        lines, ElementsAre("Student 1:WRW", "Student 2:.–.", "Student 8:R..", "Student 9:–.."));
    EXPECT_EQ(outreachSummary(look, true), "2 written to, 1 better within two weeks");
    EXPECT_EQ(outreachSummary(look, false), "Contacts are not remembered.");
    const LookBack none = lookBack(99, {}, core.stores.history, core.stores.contacts);
    EXPECT_TRUE(none.days.empty());
    EXPECT_EQ(outreachSummary(none, true), "You have not written to anyone in this course.");
}

TEST(Explain, SignalsAndCoverageAsTexts) {
    RiskRow row = test::row(1, "At Risk");
    row.score = 0.5;
    row.signals[Signal::missing] = 0.21;
    row.signals[Signal::grade] = 0;
    row.floor = ScoreFloor::mostWorkMissing;
    EXPECT_EQ(
        signalsText(row),
        "Score 0.50, Missing work 0.21, Past due no data, Time in course no data, Current score "
        "0.00, Inactivity no data. Raised to At Risk, since at least half of the work so far is "
        "missing.");
    const Coverage all{{Signal::missing, true, ""}, {Signal::time, true, "limited"}};
    EXPECT_EQ(coverageLine(all), "All 2 signals count");
    EXPECT_TRUE(isLimited(all));
    EXPECT_EQ(coverageText(all[1]), "Time in course counts. limited");
    const Coverage some{{Signal::missing, true, ""}, {Signal::time, false, "None."}};
    EXPECT_EQ(coverageLine(some), "1 of 2 signals count");
    EXPECT_EQ(coverageText(some[1]), "Time in course does not count. None.");
    EXPECT_FALSE(isLimited({{Signal::missing, true, ""}}));
    EXPECT_EQ(coverageLine({}), "");
}

} // namespace
} // namespace ellwynd
