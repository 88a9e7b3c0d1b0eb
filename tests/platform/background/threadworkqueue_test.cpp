#include "platform/background/threadworkqueue.h"
#include "support/until.h"

#include <gmock/gmock.h>

#include <latch>
#include <thread>

namespace ellwynd {
namespace {

using namespace std::chrono_literals;

TEST(ThreadWorkQueue, WorksInOrderAndReportsHere) {
    ThreadWorkQueue queue;
    // Written on the thread of the queue, and read when it is done.
    std::vector<int> worked;
    std::vector<int> order;
    const auto here = std::this_thread::get_id();
    bool wasHere = false;
    for (int i = 0; i < 3; ++i) {
        queue.run(
            [&, i] {
                worked.push_back(i);
                wasHere = wasHere || std::this_thread::get_id() == here;
            },
            [&, i] { order.push_back(i); });
    }
    ASSERT_TRUE(test::until([&] { return order.size() == 3; }));
    EXPECT_FALSE(wasHere);
    EXPECT_THAT(worked, testing::ElementsAre(0, 1, 2));
    EXPECT_EQ(order, worked);

    order.clear();
    queue.run([] {}, [&] { queue.run([] {}, [&] { order.push_back(1); }); });
    EXPECT_TRUE(queue.finish(10s)) << "without an event loop";
    EXPECT_THAT(order, testing::ElementsAre(1));
}

TEST(ThreadWorkQueue, DoesNotWaitForWorkThatHangs) {
    auto hang = std::make_shared<std::latch>(1);
    bool called = false;
    {
        ThreadWorkQueue queue;
        queue.run([hang] { hang->wait(); }, [&] { called = true; });
        EXPECT_FALSE(queue.finish(1ms));
    }
    hang->count_down();
    QCoreApplication::processEvents();
    EXPECT_FALSE(called) << "its owner is gone";
}

} // namespace
} // namespace ellwynd
