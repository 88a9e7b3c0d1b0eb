#include "app/roster/savedcourse.h"
#include "base/files.h"
#include "risk/levelcounts.h"
#include "support/instants.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using test::TemporaryFolder;

/// A course with one assignment, which one of its two students is missing. A user who is not on the
/// roster is missing it too.
struct SavedCourse {
    TemporaryFolder folder;

    SavedCourse() {
        (void)folder.write("course.json", R"({"id": 4021, "name": "Bio"})");
        (void)folder.write("enrollments.json", R"([{"user_id": 1}, {"user_id": 2}])");
        (void)folder.write(
            "assignment_groups.json",
            R"([{"id": 1, "assignments": [{"id": 5, "name": "Essay", "points_possible": 10}]}])");
        (void)folder.write(
            "submissions.json",
            R"([{"user_id": 2, "assignment_id": 5, "workflow_state": "unsubmitted", "missing": true},
                {"user_id": 77, "assignment_id": 5, "workflow_state": "unsubmitted", "missing": true}])");
    }

    [[nodiscard]] ScoredCourse score() const {
        return scoreSavedCourse(folder.path(), CourseThresholds{}, test::noon);
    }
};

TEST(SavedCourse, IsScoredWithoutUsersNotOnTheRoster) {
    const ScoredCourse course = SavedCourse().score();
    ASSERT_EQ(course.rows.size(), 2U);
    EXPECT_EQ(course.rows[0].id, 2);
    EXPECT_EQ(course.rows[0].reasonLines[0].text, "1 of 1 assignments missing — 100% of the grade");
    ASSERT_EQ(course.missedWork.size(), 1U);
    EXPECT_THAT(course.missedWork[0].studentIDs, testing::ElementsAre(2));
    EXPECT_EQ(levelCounts(course.rows).flagged(), 1);
}

TEST(SavedCourse, WithoutSharesMissingWorkIsCountedAndNamed) {
    const SavedCourse saved;
    (void)saved.folder.write(
        "assignment_groups.json", R"([{"id": 1, "assignments": [{"id": 5, "name": "Essay"}]}])");
    const RiskRow row = saved.score().rows[0];
    EXPECT_NEAR(row.score, 0.06, 1e-12);
    EXPECT_EQ(row.reasonLines[0].text, "1 of 1 assignments missing");
    EXPECT_EQ(missingAssignments(row)[0].name, "Essay");
}

TEST(SavedCourse, IsScoredAgainAsOfTheDayItWasRead) {
    const SavedCourse saved;
    (void)saved.folder.write(
        "enrollments.json",
        R"([{"user_id": 1, "last_activity_at": "2026-09-04T12:00:00Z"},
            {"user_id": 2, "last_activity_at": "2026-09-24T11:00:00Z"}])");
    UserDefaults defaults(saved.folder.path() / "Preferences.json", {});
    defaults.set(preferences::defaultPassingScore, 61.5);
    const auto read = std::make_shared<const ScoredCourse>(saved.score());
    const SharedCourse again = withCurrentThresholds(read, defaults);
    EXPECT_EQ(again->thresholds.passingScore, 61.5);
    ASSERT_EQ(again->rows.back().reasonLines.size(), 1U);
    EXPECT_EQ(again->rows.back().reasonLines.back().text, "No recent activity (20 days)");
}

TEST(ScoredCourse, SharesEqualReasonsWithTheEarlierOne) {
    const auto score = [](double firstScore, const ScoredCourse *earlier) {
        const std::vector<Enrollment> students{
            {.userID = 1, .grades = Grades{.currentScore = firstScore}},
            {.userID = 2, .grades = Grades{.currentScore = 45}}};
        return scoreCourse({.id = 4021}, students, {}, {}, {}, test::noon, earlier);
    };
    const auto sentence = [](const ScoredCourse &course, std::int64_t student) {
        return &std::ranges::find(course.rows, student, &RiskRow::id)->reasonLines.at(0);
    };
    const ScoredCourse earlier = score(40, nullptr);
    const ScoredCourse later = score(50, &earlier);
    EXPECT_EQ(sentence(later, 2), sentence(earlier, 2));
    EXPECT_EQ(sentence(later, 1)->text, "Current score 50% (below 70%)");

    const ScoredCourse another = rescored(later, {.passingScore = 45});
    EXPECT_TRUE(std::ranges::all_of(
        another.rows, [](const RiskRow &row) { return row.reasonLines.empty(); }));
    EXPECT_EQ(sentence(rescored(later, {.inactivityDays = 9}), 2), sentence(earlier, 2));
}

TEST(SavedCourse, EveryInvalidFileIsReportedInOneSentence) {
    using namespace testing;
    for (const auto &[file, bytes, sentence] :
         std::vector<std::tuple<const char *, const char *, const char *>>{
             {"course.json", "", "course.json couldn’t be read: Course: the text is empty"},
             {"enrollments.json", R"([{"id": 1}])",
              "enrollments.json couldn’t be read: Enrollment [0].user_id is missing"},
             {"assignment_groups.json", " <!DOCTYPE html><html>",
              "assignment_groups.json contains a web page instead of Canvas JSON."},
             {"submissions.json", "[",
              "submissions.json couldn’t be read: SubmissionSummary: it is not valid JSON"}}) {
        const SavedCourse saved;
        (void)saved.folder.write(file, bytes);
        EXPECT_THAT(
            [&] { (void)saved.score(); },
            ThrowsMessage<FileError>(AllOf(StartsWith(sentence), Not(HasSubstr("\n")))));
    }
    const SavedCourse saved;
    std::filesystem::remove(saved.folder.path() / "submissions.json");
    EXPECT_THAT(
        [&] { (void)saved.score(); },
        ThrowsMessage<FileError>(StartsWith("submissions.json is missing from ")));
    EXPECT_THROW((void)scoreSavedCourse("/nowhere", {}, test::noon), FileError);
}

} // namespace
} // namespace ellwynd
