#include "programs/brisken-roost/SecondStart.h"

#include "tests/bus/BusPeer.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using Kind = InstanceLock::Kind;

class SecondStartTest : public testing::Test {
protected:
    QCoro::Task<Start> start(std::chrono::milliseconds patience = guardTime)
    {
        return startOnce(own, bus.address(), patience, stop.get_token());
    }
    bool isFree() const { return InstanceLock{file}.take(Kind::shared); }

    LogCatcher log;
    ScratchFolder scratch;
    PrivateBus bus;
    std::filesystem::path file = scratch.path() / "app";
    std::shared_ptr<InstanceLock> own = std::make_shared<InstanceLock>(file);
    InstanceLock other{file};
    std::stop_source stop;
};

TEST_F(SecondStartTest, IsTheOnlyOne)
{
    EXPECT_EQ(await(start()), Start::alone);
    EXPECT_FALSE(isFree());
}

TEST_F(SecondStartTest, BringsTheRunningAppToTheFront)
{
    ASSERT_TRUE(other.take(Kind::exclusive));
    const BusPeer app(bus.address());
    ASSERT_EQ(app.takeName(), 1U);
    std::vector<QString> calls;
    const CallCatcher catcher(app.connection(),
                              [&](const QDBusMessage& message, const QDBusConnection& connection) {
                                  calls.push_back(message.member());
                                  connection.send(message.createReply());
                              });
    EXPECT_EQ(await(start()), Start::handedOver);
    EXPECT_THAT(calls, testing::ElementsAre(QStringLiteral("Activate")));
}

TEST_F(SecondStartTest, LeavesTheRunningAppAloneWhereThereIsNoBus)
{
    ASSERT_TRUE(other.take(Kind::exclusive));
    EXPECT_EQ(await(startOnce(own, {}, guardTime, {})), Start::handedOver);
}

TEST_F(SecondStartTest, WaitsForAnAppThatIsAboutToEnd)
{
    ASSERT_TRUE(other.take(Kind::exclusive));
    Pending starting(start());
    EXPECT_FALSE(runUntil([&] { return starting.isDone(); }, 300ms));
    other.release();
    EXPECT_EQ(starting.get(), Start::alone);
    EXPECT_FALSE(isFree());
}

TEST_F(SecondStartTest, DoesNotWaitForeverForAnAppThatDoesNotAnswer)
{
    ASSERT_TRUE(other.take(Kind::exclusive));
    EXPECT_EQ(await(start(200ms)), Start::unanswered);
}

TEST_F(SecondStartTest, WaitsForCommandsAndSaysSoOnce)
{
    ASSERT_TRUE(other.take(Kind::shared));
    Pending starting(start(0ms));
    EXPECT_FALSE(runUntil([&] { return starting.isDone(); }, 500ms));
    EXPECT_TRUE(isFree()) << "other commands go on meanwhile";
    other.release();
    EXPECT_EQ(starting.get(), Start::alone);
    EXPECT_THAT(log.messages("world.brisken.roost.mac"),
                testing::Contains(
                    QStringLiteral("Brisken Roost starts when the commands that are under way have ended"))
                    .Times(1));
}

TEST_F(SecondStartTest, DoesNotStandInTheWayOfAnotherStartThatWaits)
{
    ASSERT_TRUE(other.take(Kind::shared));
    Pending first(start());
    const auto otherOwn = std::make_shared<InstanceLock>(file);
    Pending second(startOnce(otherOwn, bus.address(), guardTime, stop.get_token()));
    EXPECT_FALSE(runUntil([&] { return first.isDone() || second.isDone(); }, 300ms));
    other.release();
    EXPECT_TRUE(runUntil([&] { return first.isDone() || second.isDone(); }));
    stop.request_stop();
    const std::vector<Start> ends{first.get(), second.get()};
    EXPECT_THAT(ends, testing::UnorderedElementsAre(Start::alone, Start::stopped));
}

TEST_F(SecondStartTest, IsStoppedWhileItWaits)
{
    ASSERT_TRUE(other.take(Kind::exclusive));
    Pending starting(start());
    stop.request_stop();
    EXPECT_EQ(starting.get(), Start::stopped);
}

} // namespace
} // namespace roost::test
