#include "net/runtoend.h"
#include "net/task.h"
#include "support/logcapture.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using namespace std::chrono_literals;

template<class Error>
QCoro::Task<> failWith(Error error) {
    throw error;
    co_return;
}

TEST(Detach, LogsWhatEscapes) {
    const test::LogCapture log;
    detach(failWith(std::runtime_error("no such file")), "Counting");
    detach(failWith(7), "Guessing");
    detach(failWith(Cancelled()), "Waiting");
    EXPECT_THAT(
        test::LogCapture::lines(),
        testing::ElementsAre("network: Counting failed: no such file", "network: Guessing failed"));
}

QCoro::Task<std::chrono::nanoseconds> missing(std::chrono::milliseconds wait) {
    const auto begin = std::chrono::steady_clock::now();
    auto waiting = sleepFor(wait, {});
    co_await waiting;
    co_return wait - (std::chrono::steady_clock::now() - begin);
}

/// Many at a time, since a timer that is off by a twentieth is not off each time.
TEST(SleepFor, IsNeverShorterThanAsked) {
    std::vector<QCoro::Task<std::chrono::nanoseconds>> waits;
    for (int i = 0; i < 40; ++i)
        waits.push_back(missing(std::chrono::milliseconds(60 + i)));
    for (auto &wait : waits)
        EXPECT_LE(runToEnd(std::move(wait)), 0ns);
}

} // namespace
} // namespace ellwynd
