#include "app/courses/termexpansion.h"

#include <gmock/gmock.h>

#include <limits>

namespace ellwynd {
namespace {

using testing::ElementsAre;

constexpr std::int64_t othersCollapsed = std::numeric_limits<std::int64_t>::min();
using Terms = std::vector<std::optional<std::int64_t>>;

TEST(TermExpansion, AListSaysNothingAboutTermsThatBeganLater) {
    for (const auto &[why, saved, terms, expected] :
         std::vector<std::tuple<const char *, IDList, Terms, std::vector<bool>>>{
             {"no list", {}, {3, 2, 1, {}}, {true, true, false, false}},
             {"a new term", {-2, 1}, {3, 2, 1}, {true, false, true}},
             {"a list without collapsed terms", {1}, {3, 2, 1}, {true, true, true}},
             {"all collapsed", {-3, -2, -1}, {4, 3, 2, 1}, {true, false, false, false}},
             {"both forms, of an older version", {-3, 3}, {3}, {true}},
             {"courses without a term", {0}, {3, 2, {}}, {true, true, true}},
             {"courses without a term, collapsed", {othersCollapsed}, {3, {}}, {true, false}}}) {
        std::vector<bool> expanded;
        for (const TermExpansion &term : expansionOf(saved, terms))
            expanded.push_back(term.expanded);
        EXPECT_EQ(expanded, expected) << why;
    }
}

TEST(TermExpansion, TermsThatAreNotShownKeepTheirState) {
    EXPECT_THAT(
        withExpansion({-9, -3, 2, 8}, {{3, true}, {2, false}, {std::nullopt, false}}),
        ElementsAre(othersCollapsed, -9, -2, 3, 8));
    EXPECT_THAT(
        withExpansion({othersCollapsed}, {{std::nullopt, true}, {7, true}}), ElementsAre(0, 7));
}

} // namespace
} // namespace ellwynd
