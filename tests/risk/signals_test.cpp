#include "support/classroom.h"

#include <gmock/gmock.h>

#include <random>

namespace ellwynd {
namespace {

using test::Classroom;

constexpr std::int64_t day = 86'400;

/// A course with any mixture of data, often without some of it.
Classroom randomCourse(unsigned seed) {
    std::mt19937 random(seed);
    const auto draw = [&random](int most) { return std::int64_t(random() % unsigned(most + 1)); };
    Classroom room;
    const bool hasGrades = draw(4) > 0;
    const bool hasTimes = draw(4) > 0;
    const bool hasActivity = draw(4) > 0;
    const std::int64_t quiet = draw(5) == 0 ? 40 : 0;
    for (std::int64_t id = 1; id <= 1 + draw(11); ++id) {
        room.student(
            id, hasGrades && draw(9) > 0 ? std::optional(double(draw(1000)) / 10) : std::nullopt,
            hasActivity && draw(9) > 0 ? std::optional((quiet + draw(30)) * day) : std::nullopt,
            hasTimes && draw(9) > 0 ? std::optional(draw(90'000)) : std::nullopt);
        for (std::int64_t work = 1; work <= draw(8); ++work) {
            const std::int64_t state = draw(3);
            if (state == 0)
                room.missing(id, {work});
            else if (state == 1)
                room.handedIn(id, {work});
            else if (state == 2)
                room.overdue(id, {work});
        }
    }
    if (draw(2) == 0) {
        room.weighting.emplace();
        for (std::int64_t work = 1; work <= 8; ++work)
            room.weighting->sharesByAssignment[work] = double(draw(30)) / 100;
    }
    if (draw(5) == 0)
        room.termEndsAt = test::noon - std::chrono::days(1);
    room.passing = double(40 + draw(50));
    return room;
}

TEST(Signals, AddUpToTheScoreAndAgreeWithTheCoverage) {
    int lifted = 0;
    std::map<Signal, std::pair<int, int>> seen;
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE(seed);
        const auto [rows, coverage] = randomCourse(seed).scored();
        ASSERT_EQ(coverage.size(), allSignals.size());
        std::set<Signal> counting;
        for (const SignalCoverage &entry : coverage) {
            (entry.counts ? seen[entry.signal].first : seen[entry.signal].second) += 1;
            EXPECT_TRUE(entry.counts || !entry.note.empty());
            if (entry.counts)
                counting.insert(entry.signal);
        }
        for (const RiskRow &row : rows) {
            const double sum = row.signals.sum();
            if (row.floor) {
                // A rule lifted the score.
                ++lifted;
                EXPECT_LT(sum, row.score);
                EXPECT_EQ(row.score, row.floor == ScoreFloor::belowPassing ? 0.1 : 0.5);
            } else {
                EXPECT_NEAR(sum, row.score, 1e-9);
            }
            for (const Signal signal : allSignals)
                EXPECT_TRUE(counting.contains(signal) || !row.signals[signal]);
            for (const ReasonLine &line : row.reasonLines) {
                EXPECT_TRUE(
                    line.role != ReasonRole::inactivity || counting.contains(Signal::inactivity));
                EXPECT_TRUE(
                    line.role != ReasonRole::timeInCourse || counting.contains(Signal::time));
            }
        }
    }
    EXPECT_GT(lifted, 1000);
    for (const auto &[signal, counts] : seen) {
        EXPECT_GT(counts.first, 100) << signalName(signal);
        EXPECT_GT(counts.second, 20) << signalName(signal);
    }
}

TEST(Signals, TheFloorNamesTheRule) {
    const auto graded = [](double score) { return Classroom().student(1, score); };
    for (const auto &[what, room, floor] :
         std::vector<std::tuple<const char *, Classroom, std::optional<ScoreFloor>>>{
             {"passing", graded(80), std::nullopt},
             {"just below passing", graded(69), ScoreFloor::belowPassing},
             {"below passing, and more than the minimum", graded(55), std::nullopt},
             {"failing", graded(50), ScoreFloor::failingGrade},
             {"most work missing", graded(90).missing(1, {1, 2}).handedIn(1, {3, 4}),
              ScoreFloor::mostWorkMissing},
             {"failing, and most work missing", graded(50).missing(1, {1, 2}),
              ScoreFloor::failingGrade}})
        EXPECT_EQ(room.row(1).floor, floor) << what;
}

TEST(Signals, CoverageSaysWhatIsNotKnown) {
    const auto classOf = [](std::optional<double> score, std::optional<std::int64_t> secondsAway,
                            std::int64_t time) {
        Classroom room;
        for (std::int64_t id = 1; id <= 5; ++id)
            room.student(id, score, secondsAway, time).handedIn(id, {1});
        return room;
    };
    const Classroom unweighted = classOf(80, day, 3600);
    Classroom full = unweighted;
    full.weighting = GradeWeighting{.sharesByAssignment = {{1, 1}}};
    Classroom nothingSet = full;
    nothingSet.submissions.clear();
    Classroom ended = full;
    ended.termEndsAt = test::noon - std::chrono::days(2);
    Classroom partly = full;
    partly.student(6, std::nullopt, day, 3600);
    const Classroom quiet = classOf(80, 40 * day, 3600);
    Classroom quietAtTheEnd = quiet;
    quietAtTheEnd.termEndsAt = test::noon;
    constexpr auto nothing = "Nothing is due, handed in or graded so far.";
    constexpr auto isQuiet = "Left out, since most of the class is quiet.";
    for (const auto &[room, expected] : std::vector<std::pair<Classroom, SignalCoverage>>{
             {full, {Signal::missing, true, ""}},
             {full, {Signal::inactivity, true, ""}},
             {unweighted,
              {Signal::missing, true,
               "Missing work is counted, not weighed: the course has no usable weights."}},
             {unweighted, {Signal::pastDue, true, ""}},
             {nothingSet, {Signal::missing, false, nothing}},
             {nothingSet, {Signal::pastDue, false, nothing}},
             {classOf({}, day, 3600), {Signal::grade, false, "There are no grades yet."}},
             {partly, {Signal::grade, true, "1 student has no score yet."}},
             {classOf(80, day, 0), {Signal::time, false, "Canvas reports no time in course."}},
             {classOf(80, {}, 3600), {Signal::inactivity, false, "Canvas reports no activity."}},
             {ended, {Signal::inactivity, false, "Left out, since the term has ended."}},
             {quiet, {Signal::inactivity, false, isQuiet}},
             {quietAtTheEnd, {Signal::inactivity, false, isQuiet}}}) {
        const SignalCoverage entry = room.scored().coverage[std::size_t(expected.signal)];
        EXPECT_EQ(entry, expected) << signalName(entry.signal) << ": " << entry.note;
    }
    for (const SignalCoverage &entry : Classroom().student(1).scored().coverage)
        EXPECT_FALSE(entry.counts) << "all absent: " << signalName(entry.signal);
}

} // namespace
} // namespace ellwynd
