#include "net/inthread.h"
#include "net/runtoend.h"
#include "net/task.h"
#include "support/logcapture.h"

#include <gmock/gmock.h>

#include <thread>

namespace ellwynd {
namespace {

using namespace std::chrono_literals;

template<class Error>
QCoro::Task<> failWith(Error error) {
    throw error;
    co_return;
}

TEST(Detach, LogsExceptions) {
    const test::LogCapture log;
    detach(failWith(std::runtime_error("no such file")), "Counting");
    detach(failWith(7), "Guessing");
    detach(failWith(Cancelled()), "Waiting");
    EXPECT_THAT(
        test::LogCapture::lines(),
        testing::ElementsAre("network: Counting failed: no such file", "network: Guessing failed"));
}

QCoro::Task<std::string> answerOf(int question) {
    const std::thread::id mainThread = std::this_thread::get_id();
    std::thread::id worker;
    auto working = inThread([&worker, question] {
        worker = std::this_thread::get_id();
        if (question < 0)
            throw std::runtime_error("no such question");
        return question;
    });
    std::string answer;
    try {
        answer = std::to_string(co_await working);
    } catch (const std::runtime_error &error) {
        answer = error.what();
    }
    if (worker == mainThread || std::this_thread::get_id() != mainThread)
        answer += " on the wrong thread";
    co_return answer;
}

TEST(InThread, EndsOnTheThreadThatAwaitsIt) {
    EXPECT_EQ(runToEnd(answerOf(42)), "42");
    EXPECT_EQ(runToEnd(answerOf(-1)), "no such question");
}

/// How much too short a wait was; negative when it was longer.
QCoro::Task<std::chrono::nanoseconds> shortfall(std::chrono::milliseconds wait) {
    const auto begin = std::chrono::steady_clock::now();
    auto waiting = sleepFor(wait, {});
    co_await waiting;
    co_return wait - (std::chrono::steady_clock::now() - begin);
}

/// Many at a time, since a coarse timer does not fire early every time.
TEST(SleepFor, IsNeverShorterThanRequested) {
    std::vector<QCoro::Task<std::chrono::nanoseconds>> waits;
    for (int i = 0; i < 40; ++i)
        waits.push_back(shortfall(std::chrono::milliseconds(60 + i)));
    for (auto &wait : waits)
        EXPECT_LE(runToEnd(std::move(wait)), 0ns);
}

} // namespace
} // namespace ellwynd
