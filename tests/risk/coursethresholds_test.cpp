#include "risk/coursethresholds.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>

namespace ellwynd {
namespace {

struct CourseThresholdsTest : testing::Test {
    test::TemporaryFolder folder;
    UserDefaults defaults{folder.path() / "Preferences.json", {}};
};

TEST_F(CourseThresholdsTest, FollowTheDefaultsUntilOverridden) {
    EXPECT_EQ(courseThresholds(defaults, 1), CourseThresholds{});
    courseSettings::set(defaults, 1, courseSettings::passingScore, 60.0);
    courseSettings::set(defaults, 3, courseSettings::inactivityDays, std::int64_t{10});
    defaults.set(preferences::defaultPassingScore, 65.0);

    EXPECT_EQ(courseThresholds(defaults, 1).passingScore, 60);
    EXPECT_EQ(courseThresholds(defaults, 2), CourseThresholds{.passingScore = 65});
    const CourseThresholds third{
        .passingScore = 65, .inactivityDays = 10, .inactivityOverridden = true};
    EXPECT_EQ(courseThresholds(defaults, 3), third);
    EXPECT_TRUE(third.anyOverridden());
    EXPECT_TRUE(courseSettings::has(defaults, 1, "PassingScore"));
    EXPECT_FALSE(courseSettings::has(defaults, 11, "PassingScore"));

    courseSettings::set(defaults, 1, courseSettings::inactivityDays, std::int64_t{3});
    const auto observing = defaults.observe([this](std::string_view) {
        EXPECT_FALSE(courseThresholds(defaults, 1).anyOverridden()) << "removed in one write";
    });
    const PreferenceChanges replaced = useDefaults(defaults, 1);
    EXPECT_EQ(replaced.size(), 2U);
    EXPECT_EQ(courseThresholds(defaults, 1), CourseThresholds{.passingScore = 65});
    EXPECT_EQ(defaults.persistentDomain().count("Course.1.PassingScore"), 0U);
}

TEST_F(CourseThresholdsTest, ConvertIntegersAndIgnoreTexts) {
    defaults.set("Course.1.PassingScore", std::int64_t{80});
    defaults.set("Course.2.PassingScore", std::string("eighty"));
    EXPECT_EQ(courseThresholds(defaults, 1).passingScore, 80);
    EXPECT_EQ(courseThresholds(defaults, 2), CourseThresholds{});
}

TEST(ThresholdKeys, AreTheDefaultsAndTheOverrides) {
    for (const char *key :
         {"DefaultPassingScore", "DefaultInactivityDays", "Course.7.PassingScore",
          "Course.7.InactivityDays"})
        EXPECT_TRUE(isThresholdKey(key)) << key;
    for (const char *key : {"TextScale", "Course.7.Icon", "PassingScore", ""})
        EXPECT_FALSE(isThresholdKey(key)) << key;
}

TEST(ThresholdsSummary, RoundsAndMentionsOverrides) {
    EXPECT_EQ(
        thresholdsSummary({}),
        "Scored at 70% passing, 7 days behind the class. Following the defaults from Settings.");
    for (const CourseThresholds &thresholds :
         {CourseThresholds{.passingScore = 72.5, .inactivityDays = 1, .passingOverridden = true},
          {.passingScore = 73.4, .inactivityDays = 1, .inactivityOverridden = true}})
        EXPECT_EQ(
            thresholdsSummary(thresholds),
            "Scored at 73% passing, 1 days behind the class. This course overrides the defaults.");
}

} // namespace
} // namespace ellwynd
