#include "platform/BootTimePause.h"

#include "platform/SystemBootTime.h"
#include "tests/support/Await.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;

TEST(BootTimePause, LastsAsLongAsItSays)
{
    const BootTime now = systemBootTime();
    const auto begun = now();
    await(pauseOnBootTime(120ms, {}));

    // The clock is read in whole milliseconds.
    EXPECT_GE(now() - begun, 119ms);
}

TEST(BootTimePause, IsOverAtOnceWhenThereIsNothingToWaitFor)
{
    await(pauseOnBootTime(0s, {}));
    await(pauseOnBootTime(-5s, {}));
}

TEST(BootTimePause, EndsWhenItIsStopped)
{
    std::stop_source stop;
    Pending pausing{pauseOnBootTime(24h, stop.get_token())};
    EXPECT_FALSE(pausing.isDone());
    stop.request_stop();
    pausing.get();
}

TEST(BootTimePause, EndsAtOnceWhenItIsStoppedBefore)
{
    std::stop_source stop;
    stop.request_stop();
    await(pauseOnBootTime(24h, stop.get_token()));
}

TEST(BootTimePause, TakesMoreThanAnyTimerCanForAVeryLongTime)
{
    std::stop_source stop;
    Pending pausing{pauseOnBootTime(std::chrono::duration<double>{1e300}, stop.get_token())};
    EXPECT_FALSE(pausing.isDone());
    stop.request_stop();
    pausing.get();
}

} // namespace
} // namespace roost::test
