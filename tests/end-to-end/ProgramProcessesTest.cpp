#include "tests/end-to-end/UserMachine.h"
#include "tests/support/RunUntil.h"

#include <gmock/gmock.h>

#include <csignal>

namespace roost::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using local::Endpoint;
using testing::HasSubstr;

const std::string mira = "mira-okafor";

/// `brisken-roost sync`, one process or many, of a profile that is signed in.
class SyncProcesses : public testing::Test {
protected:
    SyncProcesses()
    {
        machine.signIn(mira);
        machine.service.state().counters.clear();
    }

    /// Answers to token requests come late, when the old refresh token is of no use any more.
    void answerLate(std::chrono::milliseconds delay)
    {
        local::Scenario late;
        late.kind = local::Scenario::Kind::delay;
        late.processed = true;
        late.delay = delay;
        machine.service.state().scenarios.set(local::ScenarioBook::everyone, Endpoint::token, late);
    }

    local::Counters& counters() { return machine.service.state().counters; }

    UserMachine machine;
};

TEST_F(SyncProcesses, StartedTogetherRefreshOneAfterTheOther)
{
    constexpr int many = 6;
    answerLate(100ms);
    std::vector<std::unique_ptr<ProgramRun>> runs(many);
    for (auto& run : runs) {
        run = machine.start(u"sync"_s);
    }
    for (const auto& run : runs) {
        const Finished finished = run->end();
        EXPECT_EQ(finished.code, 0) << finished.error;
        EXPECT_EQ(finished.output, "Mira Okafor: updated\n");
    }
    EXPECT_EQ(counters().requests(Endpoint::token), many);
    EXPECT_EQ(counters().mostTokenRequestsAtOnce(), 1);
    EXPECT_EQ(counters().refreshTokenReuses(), 0);
    EXPECT_EQ(machine.run(u"accounts"_s).output, "mira-okafor  signed in  Mira Okafor\n");
    EXPECT_EQ(machine.run(u"sync"_s).code, 0);
}

TEST_F(SyncProcesses, StoresTheTokenThatWasOnItsWayWhenInterrupted)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        answerLate(2s);
        const int before = counters().requests(Endpoint::token);
        const auto interrupted = machine.start(u"sync"_s);
        ASSERT_TRUE(runUntil([&] { return counters().requests(Endpoint::token) > before; }, browserGuard));
        interrupted->signal(signal);
        const Finished finished = interrupted->end();
        EXPECT_EQ(finished.code, 1) << finished.error;
        EXPECT_THAT(finished.output, HasSubstr("keeping the last numbers"));

        machine.service.state().scenarios.clear();
        const Finished next = machine.run(u"sync"_s);
        ASSERT_EQ(next.code, 0) << next.error;
        EXPECT_EQ(next.output, "Mira Okafor: updated\n");
        EXPECT_EQ(counters().refreshTokenReuses(), 0);
        EXPECT_EQ(machine.keptTokens(mira), 1);
    }
}

TEST(SyncProcess, SendsNoTokenOfTheProgramsOwnServiceToAnother)
{
    UserMachine machine;
    machine.keyring.putItem(
        PrivateKeyring::defaultPath(),
        {{u"service"_s, u"world.brisken.roost.mac"_s}, {u"account"_s, u"refresh-token|mine"_s}}, "canary");
    const Finished finished = machine.run(u"sync"_s);
    EXPECT_EQ(finished.code, 3);
    EXPECT_THAT(finished.error, HasSubstr("No profile is signed in here yet."));
    EXPECT_EQ(machine.service.state().counters.requests(Endpoint::token), 0);
}

TEST(SignInProcess, AsksNobodyAndOpensNothingWithoutAKeyring)
{
    UserMachine machine;
    machine.keyring.end();
    const Finished finished = machine.run(u"sign-in"_s);
    EXPECT_EQ(finished.code, 1);
    EXPECT_THAT(finished.error, HasSubstr("There is no keyring to keep the sign-in in."));
    EXPECT_EQ(machine.service.state().counters.requests(Endpoint::metadata), 0);
    EXPECT_FALSE(std::filesystem::exists(machine.folder() / "address"));
}

} // namespace
} // namespace roost::test
