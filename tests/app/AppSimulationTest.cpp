#include "tests/app/AppSimulation.h"

#include <gtest/gtest.h>

namespace roost::test {
namespace {

/// A number from the environment, for longer runs than those of every day.
int numberFrom(const char* variable, int otherwise)
{
    bool isNumber = false;
    const int number = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber ? number : otherwise;
}

/// Seeds are split into groups, which can be run at once.
class AppSimulationTest : public testing::TestWithParam<int> {
public:
    static constexpr int groups = 8;
};

TEST_P(AppSimulationTest, KeepsEveryLawThroughTheDays)
{
    const int days = numberFrom("ROOST_SIMULATED_DAYS", 1);
    const int seeds = numberFrom("ROOST_SIMULATION_SEEDS", 200);
    const int first = numberFrom("ROOST_SIMULATION_FIRST_SEED", 1);
    AppSimulation::Census all;
    int lived = 0;
    for (int seed = first + GetParam(); seed < first + seeds; seed += groups) {
        AppSimulation simulation{static_cast<std::uint64_t>(seed)};
        ASSERT_EQ(simulation.run(days), "");
        lived += days;
        all.steps += simulation.census().steps;
        all.kills += simulation.census().kills;
        all.shown += simulation.census().shown;
        all.signIns += simulation.census().signIns;
    }
    // That nothing was broken says something only where things happened.
    if (lived >= 25) {
        EXPECT_GT(all.steps, 10'000U);
        EXPECT_GT(all.kills, 20U);
        EXPECT_GT(all.shown, 100U);
        EXPECT_GT(all.signIns, 100U);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, AppSimulationTest, testing::Range(0, AppSimulationTest::groups));

} // namespace
} // namespace roost::test
