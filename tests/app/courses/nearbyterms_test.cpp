#include "app/courses/nearbyterms.h"
#include "support/instants.h"

#include <gtest/gtest.h>

namespace ellwynd {
namespace {

using test::noon;

constexpr std::int64_t day = 86'400;

/// Seconds from noon; negative before it.
using Offset = std::optional<std::int64_t>;

std::optional<Date> instant(const Offset &offset) {
    return offset ? std::optional{Date(noon + std::chrono::seconds(*offset))} : std::nullopt;
}

Term term(std::int64_t id, const Offset &start, const Offset &end) {
    return {.id = id, .startAt = instant(start), .endAt = instant(end)};
}

/// One course for each term, and one without a term.
std::vector<Course> coursesOf(const std::vector<Term> &terms) {
    std::vector<Course> courses{{.id = 1}};
    for (const Term &each : terms)
        courses.push_back({.id = 100 + each.id, .term = each});
    return courses;
}

TEST(NearbyTerms, BoundsAreInclusive) {
    for (const auto &[name, start, end, nearby] :
         std::vector<std::tuple<const char *, Offset, Offset, bool>>{
             {"no dates", {}, {}, false},
             {"an end without a start", {}, day, false},
             {"starts now", 0, 90 * day, true},
             {"ends now", -90 * day, 0, true},
             {"starts in a second", 1, 90 * day, true},
             {"starts in 60 days", 60 * day, 150 * day, true},
             {"starts in 60 days and a second", 60 * day + 1, 150 * day, false},
             {"ended 30 days ago", -120 * day, -30 * day, true},
             {"ended 30 days and a second ago", -120 * day, -30 * day - 1, false},
             {"began 120 days ago without an end", -120 * day, {}, true},
             {"began 120 days and a second ago without an end", -120 * day - 1, {}, false},
             {"began a year ago and has not ended", -365 * day, day, true},
         })
        EXPECT_EQ(isNearby(term(7, start, end), noon), nearby) << name;
}

TEST(AutomaticTerm, IsTheLatestInSessionElseTheLatestStarted) {
    for (const auto &[name, terms, id] :
         std::vector<std::tuple<const char *, std::vector<Term>, std::optional<std::int64_t>>>{
             {"no terms", {}, {}},
             {"none has started", {term(1, 1, 90 * day), term(2, {}, {})}, {}},
             {"overlapping terms", {term(1, -10 * day, day), term(2, -5 * day, 90 * day)}, 2},
             {"a tie", {term(8, -day, day), term(9, -day, 2 * day), term(7, -day, day)}, 9},
             {"in session takes precedence over started later",
              {term(1, -100 * day, day), term(2, -50 * day, -day)},
              1},
             {"starting now", {term(1, -90 * day, day), term(2, 0, 90 * day)}, 2},
             {"ending now", {term(1, -90 * day, 0), term(2, -50 * day, -1)}, 1},
             {"between terms", {term(1, -200 * day, -100 * day), term(2, -90 * day, -day)}, 2},
             {"long ended, so not nearby", {term(1, -400 * day, -300 * day)}, 1},
             {"no end, 120 days ago", {term(1, -120 * day, {}), term(2, -110 * day, -day)}, 1},
             {"no end, 121 days ago, another in session",
              {term(1, -121 * day, {}), term(2, -150 * day, day)},
              2},
         }) {
        const auto automatic = automaticTerm(coursesOf(terms), noon);
        EXPECT_EQ(automatic ? std::optional{automatic->id} : std::nullopt, id) << name;
    }
}

} // namespace
} // namespace ellwynd
