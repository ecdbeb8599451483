#include "model/Pause.h"

#include "tests/support/Await.h"
#include "tests/support/LogCatcher.h"

#include <gtest/gtest.h>

#include <limits>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using Seconds = std::chrono::duration<double>;

/// What a pause ends with, in a coroutine of its own.
QCoro::Task<bool> paused(Seconds length, std::stop_token stop)
{
    auto pausing = pauseOnEventLoop(length, stop);
    co_await pausing;
    co_return true;
}

TEST(PauseOnEventLoop, EndsEarlyWhenStopped)
{
    std::stop_source source;
    Pending pending(paused(1h, source.get_token()));
    EXPECT_FALSE(pending.isDone());
    source.request_stop();
    EXPECT_FALSE(pending.isDone()) << "only from the event loop";
    EXPECT_TRUE(pending.get());
    EXPECT_TRUE(await(paused(1h, source.get_token())));
}

TEST(PauseOnEventLoop, EndsByItself) { EXPECT_TRUE(await(paused(1ms, {}))); }

TEST(PauseOnEventLoop, DoesNotEndBefore)
{
    const auto begin = std::chrono::steady_clock::now();
    await(paused(30ms, {}));
    // The timers of the event loop may be a twentieth early.
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 28ms);
}

TEST(PauseOnEventLoop, IsOverAtOnceWhenThereIsNothingToWaitFor)
{
    const LogCatcher log;
    EXPECT_TRUE(await(paused(0s, {})));
    EXPECT_TRUE(await(paused(-5s, {})));
    EXPECT_TRUE(await(paused(-1e300 * 1s, {})));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST(PauseOnEventLoop, TakesMoreThanAnyTimerCan)
{
    const LogCatcher log;
    for (const Seconds length :
         {Seconds{1e7}, Seconds{1e18}, Seconds{1e300}, Seconds{std::numeric_limits<double>::infinity()}}) {
        std::stop_source source;
        Pending pending(paused(length, source.get_token()));
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        EXPECT_FALSE(pending.isDone()) << length.count();
        source.request_stop();
        EXPECT_TRUE(pending.get());
    }
    EXPECT_TRUE(log.lines().isEmpty());
}

} // namespace
} // namespace roost::test
