#include "platform/TerminationSignals.h"

#include "tests/support/RunUntil.h"

#include <gtest/gtest.h>

#include <csignal>

namespace roost::test {
namespace {

bool isDefault(int signal)
{
    struct sigaction action{};
    ::sigaction(signal, nullptr, &action);
    return action.sa_handler == SIG_DFL;
}

class TerminationSignalsTest : public testing::TestWithParam<int> {};

TEST_P(TerminationSignalsTest, TellsTheFirstFromTheEventLoop)
{
    int told = 0;
    const TerminationSignals signals{[&told] { ++told; }};
    ASSERT_EQ(std::raise(GetParam()), 0);
    EXPECT_EQ(told, 0);
    EXPECT_TRUE(runUntil([&told] { return told == 1; }));
}

TEST_P(TerminationSignalsTest, LeavesTheNextToTheSystem)
{
    const TerminationSignals signals{[] {}};
    EXPECT_FALSE(isDefault(GetParam()));
    ASSERT_EQ(std::raise(GetParam()), 0);
    EXPECT_TRUE(isDefault(GetParam()));
}

TEST_P(TerminationSignalsTest, LeavesAllToTheSystemAfterwards)
{
    {
        const TerminationSignals signals{[] {}};
    }
    EXPECT_TRUE(isDefault(GetParam()));
}

TEST_P(TerminationSignalsTest, LeavesIgnoredOnesIgnored)
{
    ::signal(GetParam(), SIG_IGN);
    {
        const TerminationSignals signals{[] {}};
        struct sigaction action{};
        ::sigaction(GetParam(), nullptr, &action);
        EXPECT_EQ(action.sa_handler, SIG_IGN);
    }
    ::signal(GetParam(), SIG_DFL);
}

INSTANTIATE_TEST_SUITE_P(Signals, TerminationSignalsTest, testing::Values(SIGINT, SIGTERM, SIGHUP));

} // namespace
} // namespace roost::test
