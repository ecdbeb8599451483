#include "programs/brisken-roost/QuitCommand.h"

#include "platform/InstanceLock.h"
#include "tests/bus/ModelOnBus.h"
#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;

class QuitCommandTest : public testing::Test, protected ModelOnBus {
protected:
    QuitCommandTest()
    {
        startOnBus();
        EXPECT_TRUE(await(app->connectToApp()));
        EXPECT_TRUE(lock.take(InstanceLock::Kind::exclusive));
    }

    QCoro::Task<CommandResult> quitting(std::chrono::milliseconds patience = guardTime)
    {
        return runQuit(app, file, patience, stop.get_token());
    }

    ScratchFolder scratch;
    std::filesystem::path file = scratch.path() / "app";
    InstanceLock lock{file};
    std::stop_source stop;
    std::shared_ptr<ModelProxy> app = std::make_shared<ModelProxy>(bus().address());
};

TEST_F(QuitCommandTest, EndsWhenTheAppHasEnded)
{
    Pending pending(quitting());
    ASSERT_TRUE(runUntil([&] { return quits == 1; }));
    EXPECT_FALSE(runUntil([&] { return pending.isDone(); }, 300ms));
    lock.release();
    EXPECT_EQ(pending.get().code, ExitCode::fine);
}

TEST_F(QuitCommandTest, SaysThatTheAppTakesLong)
{
    const CommandResult result = await(quitting(200ms));
    EXPECT_EQ(result.code, ExitCode::failure);
    EXPECT_EQ(result.error, "brisken-roost: Brisken Roost has not ended yet.\n");
}

TEST_F(QuitCommandTest, StopsWaiting)
{
    Pending pending(quitting(10min));
    ASSERT_TRUE(runUntil([&] { return quits == 1; }));
    stop.request_stop();
    EXPECT_EQ(pending.get().code, ExitCode::failure);
}

TEST_F(QuitCommandTest, SaysThatNobodyAnswers)
{
    disappear();
    const CommandResult result = await(quitting());
    EXPECT_EQ(result.code, ExitCode::failure);
    EXPECT_EQ(result.error, "brisken-roost: Brisken Roost does not answer.\n");
    EXPECT_EQ(quits, 0);
}

} // namespace
} // namespace roost::test
