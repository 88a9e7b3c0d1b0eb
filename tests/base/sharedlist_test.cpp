#include "base/sharedlist.h"

#include <gmock/gmock.h>

#include <string>

namespace ellwynd {
namespace {

using testing::ElementsAre;
using Texts = SharedList<std::string>;

TEST(SharedList, ElementsOfOtherListsAreKeptAndNotCopied) {
    Texts chosen;
    const std::string *first = nullptr;
    {
        const Texts a{"x", "y"};
        const Texts b{"z"};
        first = &b[0];
        chosen = Texts::ofElements({&b[0], &a[1]}, {a, b});
    }
    EXPECT_EQ(&chosen.front(), first);
    EXPECT_THAT(chosen, ElementsAre("z", "y"));
    EXPECT_EQ(chosen, (Texts{"z", "y"}));
    EXPECT_NE(chosen, (Texts{"z"}));
    EXPECT_EQ(chosen.back(), "y");
    EXPECT_EQ(std::ranges::find(chosen, "y") - chosen.begin(), 1);
    EXPECT_EQ(chosen.end()[-2], "z");
    EXPECT_THROW(static_cast<void>(chosen.at(2)), std::out_of_range);
    EXPECT_TRUE(Texts::ofElements({}, {chosen}).empty());
}

} // namespace
} // namespace ellwynd
