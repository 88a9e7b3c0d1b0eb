#include "base/logfilter.h"

#include <gtest/gtest.h>

namespace ellwynd {
namespace {

TEST(LogFilter, RulesChooseByCategoryAndLevel) {
    /// What is written for "network", "sync" and another category: "i" for both levels, "e" for
    /// errors only, "-" for nothing.
    struct Row {
        const char *text;
        const char *written;
    };
    for (const Row &row : {
             Row{"", "iii"},
             Row{"  ", "iii"},
             Row{"*", "iii"},
             Row{"*:info", "iii"},
             Row{"*:error", "eee"},
             Row{"network", "i--"},
             Row{"network,sync:error", "ie-"},
             Row{" network : info , sync : off,*:error", "i-e"},
             Row{"*:error,network", "iee"},
             Row{"network,", "i--"},
             Row{"network:off,network:error", "e--"},
             Row{"Network,net", "---"},
         }) {
        const auto filter = LogFilter::parse(row.text);
        ASSERT_TRUE(filter) << row.text;
        std::string written;
        for (const char *category : {"network", "sync", "widgets"}) {
            const bool error = filter->allows(category, Log::Level::error);
            const bool info = filter->allows(category, Log::Level::info);
            EXPECT_TRUE(error || !info) << row.text;
            written += info ? "i" : error ? "e" : "-";
        }
        EXPECT_EQ(written, row.written) << row.text;
    }
}

TEST(LogFilter, InvalidRulesAreRejected) {
    for (const char *text :
         {"network:loud", ":error", ",", "network:", "network:info:error", "*:Error"})
        EXPECT_FALSE(LogFilter::parse(text)) << text;
}

} // namespace
} // namespace ellwynd
