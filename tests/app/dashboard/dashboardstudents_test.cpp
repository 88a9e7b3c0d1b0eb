#include "app/dashboard/dashboardstudents.h"
#include "support/instants.h"
#include "support/rosters.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using test::noon;

/// What is known of a student, and what the dashboard makes of it.
struct Known {
    const char *before; // "?" for the level of the last visit
    const char *now;
    double score;
    int wroteDaysAgo; // -1 for never
    const char *then;
    const char *news;
};

RecordedLevel recorded(const char *name) {
    return RecordedLevel(test::row(0, name).level);
}

DashboardStudent student(std::int64_t id, const Known &known) {
    auto row = std::make_shared<RiskRow>(test::row(id, known.now));
    row->score = known.score;
    DashboardStudent result{.row = row, .courseCode = "BIO 1"};
    if (std::string_view(known.before) != "?") {
        result.change = RosterChange{
            .studentID = id,
            .courseID = row->courseID,
            .previousLevel = recorded(known.before),
            .currentLevel = row->level};
    }
    if (known.wroteDaysAgo >= 0) {
        result.outcome = OutreachOutcome{
            .contactedAt = noon - std::chrono::days(known.wroteDaysAgo),
            .levelThen = recorded(known.then),
            .levelNow = row->level,
            .daysSince = known.wroteDaysAgo};
    }
    return result;
}

/// In the expected order.
const std::vector<Known> students{
    {"Watch", "Concern", 60, 9, "Watch",
     "slipped from Watch to Concern · awaiting follow-up · wrote Sep 15, worse"},
    {"OK", "Watch", 30, -1, "", "newly Watch · not yet reached"},
    {"?", "Concern", 65, 7, "Concern", "awaiting follow-up · wrote Sep 17, no change"},
    {"?", "At Risk", 99, -1, "", "not yet reached"},
    {"?", "At Risk", 95, 2, "At Risk", "wrote Sep 22"},
    {"At Risk", "Concern", 62, -1, "", "improved from At Risk to Concern · not yet reached"},
    {"?", "Watch", 31, 8, "Concern", "wrote Sep 16"}};

TEST(DashboardStudents, AreSortedByNeedAndSayWhatIsNew) {
    std::vector<DashboardStudent> sorted;
    for (std::size_t i = students.size(); i-- > 0;)
        sorted.push_back(student(std::int64_t(i), students[i]));
    sortByNeed(sorted);
    for (std::size_t i = 0; i < students.size(); ++i) {
        EXPECT_EQ(sorted[i].row->id, std::int64_t(i)) << students[i].news;
        EXPECT_EQ(newsText(sorted[i], true), students[i].news);
    }
    EXPECT_EQ(newsText(sorted[3], false), "") << "contacts are not remembered";
    EXPECT_EQ(
        accessibleText(sorted[1], true), "Student 1, Watch, BIO 1. newly Watch · not yet reached");
}

TEST(DashboardStudents, BelongToTheChipsThatCountThem) {
    const std::vector<std::pair<DashboardChip, std::vector<std::int64_t>>> chips{
        {DashboardChip::worse, {0, 1}},
        {DashboardChip::notYetReached, {1, 3, 5}},
        {DashboardChip::awaitingFollowUp, {0, 2}},
        {DashboardChip::atRisk, {3, 4}}};
    for (const auto &[chip, expected] : chips) {
        std::vector<std::int64_t> ids;
        for (std::size_t i = 0; i < students.size(); ++i) {
            if (belongs(student(std::int64_t(i), students[i]), chip))
                ids.push_back(std::int64_t(i));
        }
        EXPECT_EQ(ids, expected) << chipName(chip);
    }
}

} // namespace
} // namespace ellwynd
