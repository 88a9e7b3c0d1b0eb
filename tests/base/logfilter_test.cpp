#include "base/logfilter.h"

#include <gtest/gtest.h>

namespace ellwynd {
namespace {

TEST(LogFilter, RulesChooseByCategoryAndLevel) {
    // What is written for "network", "sync" and another category: "i" for both levels, "e" for
    // errors only, "-" for nothing.
    for (const auto &[text, expected] :
         {std::pair{"", "iii"},
          {"  ", "iii"},
          {"*", "iii"},
          {"*:info", "iii"},
          {"*:error", "eee"},
          {"network", "i--"},
          {"network,sync:error", "ie-"},
          {" network : info , sync : off,*:error", "i-e"},
          {"*:error,network", "iee"},
          {"network,", "i--"},
          {"network:off,network:error", "e--"},
          {"Network,net", "---"}}) {
        const auto filter = LogFilter::parse(text);
        ASSERT_TRUE(filter) << text;
        std::string written;
        for (const char *category : {"network", "sync", "widgets"}) {
            const bool error = filter->allows(category, Log::Level::error);
            const bool info = filter->allows(category, Log::Level::info);
            EXPECT_TRUE(error || !info) << text;
            written += info ? "i" : error ? "e" : "-";
        }
        EXPECT_EQ(written, expected) << text;
    }
}

TEST(LogFilter, InvalidRulesAreRejected) {
    for (const char *text :
         {"network:loud", ":error", ",", "network:", "network:info:error", "*:Error"})
        EXPECT_FALSE(LogFilter::parse(text)) << text;
}

} // namespace
} // namespace ellwynd
