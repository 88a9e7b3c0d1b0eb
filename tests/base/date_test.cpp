#include "base/calendar.h"
#include "base/date.h"
#include "support/instants.h"

#include <gtest/gtest.h>

namespace ellwynd {
namespace {

using test::at;
using namespace std::chrono_literals;

TEST(Date, ParsesEveryInstantFormat) {
    for (const auto &[text, utc] :
         {std::pair{"2026-09-03T14:05:09Z", "2026-09-03T14:05:09Z"},
          {"2026-09-03T14:05:09-06:00", "2026-09-03T20:05:09Z"},
          {"2026-09-03T14:05:09+0530", "2026-09-03T08:35:09Z"},
          {"2026-09-03T00:05:09+02", "2026-09-02T22:05:09Z"},
          {"2024-02-29T23:59:59.999999999Z", "2024-02-29T23:59:59Z"},
          {"1969-12-31T23:59:59Z", "1969-12-31T23:59:59Z"},
          {"0001-01-01T00:00:00Z", "0001-01-01T00:00:00Z"}})
        EXPECT_EQ(formatInstant(at(text)), utc) << text;
    EXPECT_EQ(at("2026-09-03T14:05:09.25Z") - at("2026-09-03T14:05:09Z"), 250ms);
    EXPECT_EQ(at("2026-09-03T14:05:09.0000019Z") - at("2026-09-03T14:05:09Z"), 1us);
}

TEST(Date, RejectsInvalidInstants) {
    const auto isInstant = [](const std::string &date, const char *time, const char *zone) {
        return parseInstant(date + time + zone).has_value();
    };
    ASSERT_TRUE(isInstant("2026-09-03", "T14:05:09", "Z"));
    for (const char *date : {"26-09-03", "+002026-09-03", "2026-02-29", "2026-13-01", "2026-00-01"})
        EXPECT_FALSE(isInstant(date, "T14:05:09", "Z")) << date;
    for (const char *time :
         {"", " 14:05:09", "T24:00:00", "T14:60:09", "T14:05:60", "T14:05:0９", "T14:05:09."})
        EXPECT_FALSE(isInstant("2026-09-03", time, "Z")) << time;
    for (const char *zone : {"", "Zx", "+", "+24:00", "+05:"})
        EXPECT_FALSE(isInstant("2026-09-03", "T14:05:09", zone)) << zone;
    for (const char *text :
         {"", "2026-09-03", "0000-01-01T00:00:00+00:01", "9999-12-31T23:59:59-00:01"})
        EXPECT_FALSE(parseInstant(text)) << text;
}

TEST(Date, WholeDaysAreTruncatedTowardZero) {
    const Date now = test::noon;
    EXPECT_EQ(wholeDaysBetween(now - 86'399s, now), 0);
    EXPECT_EQ(wholeDaysBetween(now - 86'400s, now), 1);
    EXPECT_EQ(wholeDaysBetween(now - 86'400s + 1us, now), 0);
    EXPECT_EQ(wholeDaysBetween(now + 86'399s, now), 0);
    EXPECT_EQ(wholeDaysBetween(now + 86'400s, now), -1);
}

// The tests run in Chicago time, where the clocks change on 2026-03-08 and 2026-11-01.
TEST(Calendar, DaysFollowTheZone) {
    const Date midnight = at("2026-09-24T05:00:00Z");
    EXPECT_EQ(calendar::startOfDay(midnight - 1s), midnight - 24h);
    EXPECT_EQ(calendar::startOfDay(midnight), midnight);
    EXPECT_EQ(calendar::daysBetween(at("2026-10-31T18:00:00Z"), at("2026-11-02T06:30:00Z")), 2);
    EXPECT_EQ(calendar::daysBetween(at("2026-03-07T18:00:00Z"), at("2026-03-09T05:30:00Z")), 2);
    EXPECT_EQ(calendar::daysBetween(midnight, midnight - 1s), -1);
    EXPECT_EQ(calendar::dayKey(midnight - 1s), "2026-09-23");
    for (const auto &[text, begins, ends, twoWeeksBefore] :
         {std::tuple{
              "2026-03-08T17:00:00Z", "2026-03-08T06:00:00Z", "2026-03-09T05:00:00Z",
              "2026-02-22T18:00:00Z"},
          {"2026-11-01T18:00:00Z", "2026-11-01T05:00:00Z", "2026-11-02T06:00:00Z",
           "2026-10-18T17:00:00Z"}}) {
        const Date noon = at(text);
        EXPECT_EQ(formatInstant(calendar::startOfDay(noon)), begins);
        EXPECT_EQ(formatInstant(calendar::startOfNextDay(noon)), ends);
        EXPECT_EQ(formatInstant(calendar::daysBefore(noon, 14)), twoWeeksBefore);
    }
}

} // namespace
} // namespace ellwynd
