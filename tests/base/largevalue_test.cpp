#include "base/largevalue.h"
#include "support/until.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace ellwynd {
namespace {

TEST(LargeValue, IsReleasedByAnotherThreadAfterItsLastOwnerAndTheEvent) {
    using namespace std::chrono_literals;

    std::promise<std::thread::id> released;
    const auto part = [&released] {
        return std::shared_ptr<int>(new int(7), [&released](const int *number) {
            released.set_value(std::this_thread::get_id());
            delete number;
        });
    };
    std::future<std::thread::id> releasing = released.get_future();
    auto first = shareLarge(part());
    auto second = first;
    first.reset();
    EXPECT_EQ(**second, 7);
    second.reset();
    EXPECT_EQ(releasing.wait_for(0s), std::future_status::timeout) << "in the same event";
    ASSERT_TRUE(test::until([&] { return releasing.wait_for(0s) == std::future_status::ready; }));
    EXPECT_NE(releasing.get(), std::this_thread::get_id());
}

} // namespace
} // namespace ellwynd
