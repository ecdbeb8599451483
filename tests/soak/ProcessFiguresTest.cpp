#include "tests/soak/ProcessFigures.h"

#include "tests/support/GuardedProcess.h"
#include "tests/support/Poll.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <thread>

namespace roost::test {
namespace {

TEST(ProcessFigures, CountMemoryDescriptorsAndThreads)
{
    const auto before = figuresOf(::getpid());
    ASSERT_TRUE(before);
    EXPECT_GT(before->proportional, 0);
    EXPECT_GE(before->resident, before->proportional);

    constexpr long kibibytes = 32L * 1024;
    const std::vector<char> memory(kibibytes * 1024, 'x');
    const int descriptor = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    std::stop_source stop;
    const std::jthread thread{[token = stop.get_token()] {
        while (!token.stop_requested()) {
            std::this_thread::sleep_for(std::chrono::milliseconds{1});
        }
    }};
    const auto after = figuresOf(::getpid());
    stop.request_stop();
    ASSERT_TRUE(after);
    EXPECT_EQ(std::ranges::count(memory, 'x'), kibibytes * 1024);
    EXPECT_GE(after->privateDirty, before->privateDirty + kibibytes);
    EXPECT_GE(after->resident, before->resident + kibibytes);
    EXPECT_EQ(after->descriptors, before->descriptors + 1);
    EXPECT_EQ(after->threads, before->threads + 1);
    ::close(descriptor);
}

TEST(ProcessFigures, CountTimeThatIsSpentAndNoneThatIsSlept)
{
    const GuardedProcess busy{{"sh", "-c", "while :; do :; done"}};
    poll("time is spent", [&] { return figuresOf(busy.pid())->cpu > std::chrono::milliseconds{50}; });
    busy.freeze();
    const auto spent = figuresOf(busy.pid())->cpu;
    std::this_thread::sleep_for(std::chrono::milliseconds{50});
    EXPECT_EQ(figuresOf(busy.pid())->cpu, spent);
}

TEST(ProcessFigures, AreNothingForAProcessThatHasEnded)
{
    GuardedProcess process{{"sleep", "60"}};
    const pid_t pid = process.pid();
    poll("it runs", [pid] { return figuresOf(pid).has_value(); });
    process.end();
    EXPECT_FALSE(figuresOf(pid));
}

} // namespace
} // namespace roost::test
