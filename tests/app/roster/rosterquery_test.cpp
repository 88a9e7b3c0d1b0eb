#include "app/courses/courselabel.h"
#include "app/roster/rosterquery.h"
#include "support/instants.h"
#include "support/rosters.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using testing::ElementsAre;

/// Six students: 1 and 2 flagged, 2 worse and awaiting follow-up, 3 improved off the list.
RosterView someRoster() {
    const std::vector<std::tuple<const char *, const char *, std::optional<double>>> students{
        {"At Risk", "zoe Adams", 40}, {"Watch", "Émile", 66}, {"", "Ana", 66},
        {"", "<b>Bob</b>", {}},       {"", "김 지수", 90},    {"", "Ana Zed", 95}};
    std::vector<RiskRow> rows;
    for (const auto &[level, name, score] : students) {
        rows.push_back(test::row(std::int64_t(rows.size()) + 1, level));
        rows.back().name = name;
        rows.back().currentScore = score;
        rows.back().courseName = "Biology";
    }
    rows[0].lastActivityAt = test::noon;
    rows[2].lastActivityAt = test::noon - std::chrono::days(9);
    ReasonLine missing{.text = "2 of 9 assignments missing"};
    missing.links = {
        {{0, 26}, AssignmentRef{70, "Homework 5"}}, {{0, 26}, AssignmentRef{71, "Essay"}}};
    rows[1].reasonLines = {missing};
    missing.links.pop_back();
    rows[2].reasonLines = {missing};
    rows[0].sortableName = "Adams, Zoe";
    rows[5].sortableName = "Zed, Ana";
    rows[3].courseID = 8;
    rows[3].courseName = "Calculus";
    RosterView view{.state = RosterView::State::shown, .courseID = 7, .rows = std::move(rows)};
    view.courseCodes = {{7, "SCI 2"}, {8, "MAT 1"}};
    view.movement = {
        {.studentID = 2,
         .courseID = 7,
         .previousLevel = RecordedLevel(std::optional<RiskLevel>()),
         .currentLevel = RiskLevel::watch},
        {.studentID = 3,
         .courseID = 7,
         .previousLevel = RecordedLevel(RiskLevel::watch),
         .currentLevel = {}}};
    view.outreach[{7, 2}] = {
        .contactedAt = test::noon,
        .levelThen = RecordedLevel(RiskLevel::watch),
        .levelNow = RiskLevel::watch,
        .daysSince = 8};
    view.outreach[{8, 4}] = {.contactedAt = test::noon - std::chrono::days(1)};
    view.outreach[{7, 6}] = {.contactedAt = test::noon - std::chrono::days(2)};
    return view;
}

std::vector<std::int64_t> ids(const RosterRows &rows, const ShownRows &shown) {
    std::vector<std::int64_t> result;
    for (const std::size_t i : shown.order)
        result.push_back(rows.rows()[i].id);
    return result;
}

TEST(RosterQuery, EachChipShowsAsManyStudentsAsItCounts) {
    const RosterRows rows(someRoster());
    const std::vector<std::pair<RosterChip, std::vector<std::int64_t>>> cases{
        {RosterChip::flagged, {1, 2}},       {RosterChip::worse, {2}},
        {RosterChip::improved, {3}},         {RosterChip::notYetReached, {1}},
        {RosterChip::awaitingFollowUp, {2}}, {RosterChip::everyone, {1, 2, 3, 4, 5, 6}}};
    for (const auto &[chip, expected] : cases) {
        const ShownRows shown = rows.shown({.chip = chip});
        EXPECT_EQ(ids(rows, shown), expected) << chipName(chip);
        EXPECT_EQ(rows.count(chip), expected.size()) << chipName(chip);
        EXPECT_EQ(shown.folded, chip == RosterChip::flagged ? 4U : 0U) << chipName(chip);
    }
    EXPECT_EQ(rows.chips().size(), allRosterChips.size());
    RosterView term = someRoster();
    term.courseID.reset();
    term.remembersContacts = false;
    EXPECT_THAT(RosterRows(term).chips(), ElementsAre(RosterChip::flagged));
}

TEST(RosterQuery, FindsNamesLevelsCoursesAndAssignmentsButNotSentences) {
    const RosterRows rows(someRoster());
    for (const auto &[typed, flagged, everyone] : std::vector<
             std::tuple<const char *, std::vector<std::int64_t>, std::vector<std::int64_t>>>{
             {"  ", {1, 2}, {1, 2, 3, 4, 5, 6}},
             {"ZO", {1}, {1}},
             {"emile", {2}, {2}},
             {"watch", {2}, {2}},
             {"biology ana", {3, 6}, {3, 6}}, // nobody flagged, so the others are searched
             {"mat", {4}, {4}},               // the code of the course
             {"homework 5", {2}, {2, 3}},
             {"essay homework", {2}, {2}},
             {"assignments", {}, {}}, // a word of the sentences
             {"김", {5}, {5}},
             {"<b>", {4}, {4}},
             {".*", {}, {}}}) {
        EXPECT_EQ(ids(rows, rows.shown({.typed = typed})), flagged) << typed;
        EXPECT_EQ(ids(rows, rows.shown({.chip = RosterChip::everyone, .typed = typed})), everyone)
            << typed;
    }
    const ShownRows missing = rows.shown({.missing = AssignmentRef{70, "Homework 5"}});
    EXPECT_THAT(ids(rows, missing), ElementsAre(2));
    EXPECT_EQ(missing.folded, 1U) << "Ana is missing it too";
}

TEST(RosterQuery, ShowsWhatMatched) {
    const RosterRows rows(someRoster());
    const RiskRow &emile = rows.rows()[1];
    EXPECT_EQ(matchedAssignmentsText(emile, "BIO", "hom ess"), "Missing Homework 5, Essay");
    EXPECT_EQ(matchedAssignmentsText(emile, "BIO", "e"), "") << "in the name";
    EXPECT_THAT(
        matchedParts("Élan é", "e LAN x"), ElementsAre(MatchedPart{0, 1}, MatchedPart{1, 3}));
    EXPECT_THAT(
        matchedParts("Søren O’Brien Weiß Zoe\u0308", "soren obrien iss zoë"),
        ElementsAre(MatchedPart{0, 5}, MatchedPart{6, 7}, MatchedPart{16, 2}, MatchedPart{19, 4}));
}

TEST(RosterQuery, SortsEqualRowsInTheRostersOrder) {
    const RosterRows rows(someRoster());
    for (const auto &[sort, ascending, descending] :
         std::vector<std::tuple<RosterSort, std::vector<std::int64_t>, std::vector<std::int64_t>>>{
             {RosterSort::worstFirst, {1, 2, 3, 4, 5, 6}, {1, 2, 3, 4, 5, 6}},
             {RosterSort::level, {1, 2, 3, 4, 5, 6}, {6, 5, 4, 3, 2, 1}},
             {RosterSort::course, {4, 1, 2, 3, 5, 6}, {1, 2, 3, 5, 6, 4}},
             {RosterSort::score, {1, 2, 3, 5, 6, 4}, {4, 6, 5, 2, 3, 1}},
             {RosterSort::lastActive, {2, 4, 5, 6, 3, 1}, {1, 3, 2, 4, 5, 6}},
             {RosterSort::contacted, {2, 6, 4, 1, 3, 5}, {1, 3, 5, 4, 6, 2}}}) {
        RosterQuery query{.chip = RosterChip::everyone, .sort = sort};
        EXPECT_EQ(ids(rows, rows.shown(query)), ascending) << sortedByText(query);
        query.descending = true;
        EXPECT_EQ(ids(rows, rows.shown(query)), descending) << sortedByText(query);
    }
    // By the sortable name where there is one.
    const auto byName =
        ids(rows, rows.shown({.chip = RosterChip::everyone, .sort = RosterSort::student}));
    const auto place = [&](std::int64_t id) { return std::ranges::find(byName, id); };
    EXPECT_LT(place(1), place(3)) << "Adams before Ana";
    EXPECT_LT(place(3), place(2)) << "Ana before Émile";
}

TEST(RosterQuery, RevealsHiddenStudents) {
    const RosterRows rows(someRoster());
    const RosterQuery worse{.chip = RosterChip::worse, .typed = "e", .sort = RosterSort::score};
    EXPECT_EQ(rows.revealing(worse, {{7, 2}}), worse);
    EXPECT_EQ(rows.revealing(worse, {{7, 1}}), (RosterQuery{.sort = RosterSort::score}));
    EXPECT_EQ(
        rows.revealing(worse, {{7, 1}, {7, 6}, {7, 99}}),
        (RosterQuery{.chip = RosterChip::everyone, .sort = RosterSort::score}));
}

TEST(RosterQuery, SaysWhatIsEmptyAndHowToGetBack) {
    const AssignmentRef homework{70, "Homework 5"};
    for (const auto &[query, text, reset] :
         std::vector<std::tuple<RosterQuery, const char *, const char *>>{
             {{.typed = " x "}, "No flagged student matches “x”.", "Clear the Filter"},
             {{.chip = RosterChip::everyone, .typed = "x"},
              "No student matches “x”.",
              "Clear the Filter"},
             {{.chip = RosterChip::worse, .missing = homework},
              "No student who got worse is missing “Homework 5”.",
              "Show All Flagged Students"},
             {{.chip = RosterChip::notYetReached, .typed = "x", .missing = homework},
              "No flagged student not yet reached is missing “Homework 5” and matches “x”.",
              "Show All Flagged Students"},
             {{.chip = RosterChip::awaitingFollowUp},
              "No student awaits follow-up.",
              "Show All Flagged Students"}}) {
        EXPECT_EQ(emptyText(query), text);
        EXPECT_EQ(resetText(query), reset);
        EXPECT_EQ(withoutFilter(query).typed, "");
    }
}

TEST(FittedReasons, LeavesOutWholeSentences) {
    RiskRow row;
    row.reasonLines = {{.text = "One"}, {.text = "Two"}, {.text = "Three and some more words"}};
    for (const auto &[width, shown, more] :
         std::vector<std::tuple<std::size_t, std::size_t, const char *>>{
             {60, 3, ""},
             {28, 2, "and 1 more reason"},
             {27, 1, "and 2 more reasons"},
             {1, 1, "and 2 more reasons"}}) {
        const FittedReasons fitted = fittedReasons(
            row, [limit = width](const std::string &text) { return text.size() <= limit; });
        EXPECT_EQ(fitted.shown, shown) << width;
        EXPECT_EQ(fitted.more, more) << width;
    }
}

TEST(CourseLabel, SplitsTheNameAfterItsCode) {
    for (const auto &[name, code, label] :
         std::vector<std::tuple<const char *, std::optional<std::string>, CourseLabel>>{
             {"CS 101  4021 - Intro to  Programming",
              "CS 101",
              {"Intro to Programming", "CS 101 4021"}},
             {"Art - An Introduction", "ART", {"Art - An Introduction", "ART"}},
             {"BIO 1 - ", {}, {"BIO 1 -", ""}},
             {"Biology", "Biology", {"Biology", ""}},
             {"", "CS 1", {"CS 1", ""}}}) {
        EXPECT_EQ(courseLabel({.id = 1, .name = name, .courseCode = code}), label) << name;
    }
}

} // namespace
} // namespace ellwynd
