#include "programs/brisken-roost/Worker.h"

#include "tests/bus/ModelOnBus.h"
#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using Kind = InstanceLock::Kind;
using testing::HasSubstr;

class WorkerTest : public testing::Test, protected ModelOnBus {
protected:
    WorkerTest() { world.signInBefore("p1"); }

    QCoro::Task<std::expected<Worker, std::string>> find(std::chrono::milliseconds patience = guardTime)
    {
        return findWorker({file, world.store.directory(), baseURL, bus().address(), patience},
                          stop.get_token());
    }

    ScratchFolder scratch;
    std::filesystem::path file = scratch.path() / "app";
    InstanceLock lock{file};
    QUrl baseURL{QStringLiteral("https://roost.test")};
    std::stop_source stop;
};

TEST_F(WorkerTest, IsThisProcessWhereNoAppRuns)
{
    start();
    const auto worker = await(find());
    ASSERT_TRUE(worker);
    EXPECT_EQ(worker->app, nullptr);
    EXPECT_FALSE(lock.take(Kind::exclusive)) << "no app starts meanwhile";
    EXPECT_TRUE(await(find())) << "but other commands work";
}

TEST_F(WorkerTest, IsTheAppThatRuns)
{
    ASSERT_TRUE(lock.take(Kind::exclusive));
    startOnBus();
    const auto worker = await(find());
    ASSERT_TRUE(worker) << worker.error();
    ASSERT_NE(worker->app, nullptr);
    EXPECT_EQ(worker->lock, nullptr);
    EXPECT_EQ(worker->app->state().accounts().size(), 1U);
}

TEST_F(WorkerTest, IsWaitedForWhileItStarts)
{
    ASSERT_TRUE(lock.take(Kind::exclusive));
    start();
    Pending finding(find());
    EXPECT_FALSE(runUntil([&] { return finding.isDone(); }, 300ms));
    appear();
    const auto worker = finding.get();
    ASSERT_TRUE(worker) << worker.error();
    EXPECT_NE(worker->app, nullptr);
}

TEST_F(WorkerTest, IsThisProcessOnceTheAppHasEnded)
{
    ASSERT_TRUE(lock.take(Kind::exclusive));
    start();
    Pending finding(find());
    EXPECT_FALSE(runUntil([&] { return finding.isDone(); }, 300ms));
    lock.release();
    const auto worker = finding.get();
    ASSERT_TRUE(worker) << worker.error();
    EXPECT_EQ(worker->app, nullptr);
}

TEST_F(WorkerTest, IsNobodyWhileTheAppDoesNotAnswer)
{
    ASSERT_TRUE(lock.take(Kind::exclusive));
    start();
    EXPECT_EQ(await(find(200ms)).error(),
              "Brisken Roost is running, but does not answer on the session bus.");
    EXPECT_EQ(await(findWorker({file, world.store.directory(), baseURL, {}, 200ms}, {})).error(),
              "Brisken Roost is running, but does not answer on the session bus.");
}

TEST_F(WorkerTest, IsNoAppOfAnotherService)
{
    ASSERT_TRUE(lock.take(Kind::exclusive));
    startOnBus();
    baseURL = QUrl{QStringLiteral("http://127.0.0.1:9")};
    EXPECT_THAT(await(find()).error(), HasSubstr("is connected to https://roost.test"));
}

TEST_F(WorkerTest, IsNoAppOverOtherData)
{
    ASSERT_TRUE(lock.take(Kind::exclusive));
    startOnBus();
    EXPECT_THAT(await(findWorker({file, scratch.path(), baseURL, bus().address(), 200ms}, {})).error(),
                HasSubstr("does not answer"));
}

TEST_F(WorkerTest, IsNotLookedForAfterAStop)
{
    ASSERT_TRUE(lock.take(Kind::exclusive));
    start();
    Pending finding(find());
    stop.request_stop();
    EXPECT_EQ(finding.get().error(), "Stopped.");
}

} // namespace
} // namespace roost::test
