#include "app/RefreshLoop.h"

#include "tests/support/Await.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/VirtualTime.h"

#include <gmock/gmock.h>

namespace roost {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

const SyncOutcome::Any updated = SyncOutcome::Updated{};
const SyncOutcome::Any failed = SyncOutcome::Failed{};
const SyncOutcome::Any signedOut = SyncOutcome::SignedOut{};

class RefreshLoopTest : public testing::Test {
protected:
    ~RefreshLoopTest() override
    {
        loop->stop();
        release();
        test::Pending ending{loop->settled()};
        time.advance(0ms);
        EXPECT_TRUE(ending.isDone());
    }

    /// The next cycles take until `release`.
    void hold() { gate.emplace(); }

    void release()
    {
        if (gate) {
            std::exchange(gate, std::nullopt)->set(true);
        }
        time.advance(0ms);
    }

    /// When each cycle began, since the test did.
    std::vector<milliseconds> began;
    RefreshLoop::Outcomes outcomes;
    int atOnce = 0;
    int written = 0;
    std::optional<Arrival<bool>> gate;

    test::LogCatcher log;
    test::VirtualTime time{Date{1'750'000'000s}};
    milliseconds start = time.bootTime()();
    AppState state;
    std::shared_ptr<RefreshLoop> loop = std::make_shared<RefreshLoop>(
        state, RefreshLoop::Parts{[this](std::stop_token) { return cycle(); }, [this] { ++written; },
                                  time.clock(), time.bootTime(), time.pause()});

    QCoro::Task<RefreshLoop::Outcomes> cycle()
    {
        began.push_back(time.bootTime()() - start);
        EXPECT_EQ(++atOnce, 1);
        EXPECT_TRUE(state.isRefreshing());
        if (gate) {
            const auto coming = gate->coming();
            co_await coming;
        }
        --atOnce;
        co_return RefreshLoop::Outcomes{outcomes};
    }
};

TEST_F(RefreshLoopTest, GoesOnAsOftenAsItIsTold)
{
    const auto brisk = std::make_shared<RefreshLoop>(
        state, RefreshLoop::Parts{[this](std::stop_token) { return cycle(); }, [this] { ++written; },
                                  time.clock(), time.bootTime(), time.pause(), 7s});
    brisk->startLoop();
    time.advance(20s);
    EXPECT_THAT(began, ElementsAre(0s, 7s, 14s));

    // Nor is it longer after a failure.
    outcomes = {failed};
    time.advance(15s);
    EXPECT_THAT(began, ElementsAre(0s, 7s, 14s, 21s, 28s, 35s));
    brisk->stop();
    test::Pending ending{brisk->settled()};
    time.advance(0ms);
    EXPECT_TRUE(ending.isDone());
}

TEST_F(RefreshLoopTest, BeginsAtOnceAndGoesOnEveryFiveMinutes)
{
    loop->startLoop();
    time.advance(899s);

    EXPECT_THAT(began, ElementsAre(0s, 300s, 600s));
    EXPECT_EQ(written, 3);
}

TEST_F(RefreshLoopTest, AsksForNothingBeforeItsStart)
{
    loop->requestRefresh();
    time.advance(1000s);

    EXPECT_THAT(began, IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(RefreshLoopTest, BacksOffWhileCyclesFailAndComesBackToItsRhythm)
{
    outcomes = {failed};
    loop->startLoop();
    time.advance(60s + 120s + 240s + 300s + 300s);
    EXPECT_THAT(began, ElementsAre(0s, 60s, 180s, 420s, 720s, 1020s));

    outcomes = {updated};
    time.advance(300s);
    outcomes = {failed};
    time.advance(300s + 60s);
    EXPECT_THAT(std::vector(began.end() - 3, began.end()), ElementsAre(1320s, 1620s, 1680s));
}

TEST_F(RefreshLoopTest, WaitsAsLongAsTheServiceAsks)
{
    outcomes = {SyncOutcome::Failed{{SyncReason::Kind::unavailable, 200.0}}, failed};
    loop->startLoop();
    time.advance(200s);

    EXPECT_THAT(began, ElementsAre(0s, 200s));
}

TEST_F(RefreshLoopTest, TellsWhenAnyNumbersCame)
{
    outcomes = {failed, signedOut};
    loop->startLoop();
    time.advance(0s);
    EXPECT_EQ(state.lastRefreshAt(), std::nullopt);

    outcomes = {updated, failed};
    time.advance(60s);
    EXPECT_EQ(state.lastRefreshAt(), time.now());
    outcomes = {failed};
    time.advance(120s);
    EXPECT_EQ(state.lastRefreshAt(), time.now() - 120s);
}

TEST_F(RefreshLoopTest, CountsOnFromACycleThatOnlyPartlyFailed)
{
    outcomes = {updated, failed};
    loop->startLoop();
    time.advance(60s + 120s);

    EXPECT_THAT(began, ElementsAre(0s, 60s, 180s));
}

TEST_F(RefreshLoopTest, KeepsItsRhythmWithNobodySignedIn)
{
    outcomes = {failed};
    loop->startLoop();
    time.advance(60s);
    outcomes = {};
    time.advance(120s + 300s);
    outcomes = {failed};
    time.advance(300s + 60s);

    EXPECT_THAT(began, ElementsAre(0s, 60s, 180s, 480s, 780s, 840s));
    EXPECT_EQ(written, 6);
}

TEST_F(RefreshLoopTest, AnswersARequestAtOnceAndKeepsItsOwnTime)
{
    loop->startLoop();
    time.advance(100s);
    loop->requestRefresh();
    time.advance(200s);

    EXPECT_THAT(began, ElementsAre(0s, 100s, 300s));
    EXPECT_THAT(log.messages("world.brisken.roost.mac.sync"),
                ElementsAre(QStringLiteral("refresh requested")));
}

TEST_F(RefreshLoopTest, TakesABurstOfRequestsForOne)
{
    loop->startLoop();
    time.advance(100s);
    loop->requestRefresh();
    time.advance(500ms);
    loop->requestRefresh();
    time.advance(1499ms);
    loop->requestRefresh();
    time.advance(10s);
    EXPECT_THAT(began, ElementsAre(0s, 100s));

    loop->requestRefresh();
    time.advance(2s);
    loop->requestRefresh();
    time.advance(0s);
    EXPECT_THAT(began, ElementsAre(0s, 100s, 112s - 1ms, 114s - 1ms));
}

TEST_F(RefreshLoopTest, MeasuresBurstsWhateverTheClockIsSetTo)
{
    loop->startLoop();
    time.advance(100s);
    time.setClock(time.now() - 24h);
    loop->requestRefresh();
    time.setClock(time.now() + 48h);
    loop->requestRefresh();
    time.advance(0s);

    EXPECT_THAT(began, ElementsAre(0s, 100s));
}

TEST_F(RefreshLoopTest, FollowsTheRunningCycleAfterASecondWhenAsked)
{
    hold();
    outcomes = {failed};
    loop->startLoop();
    time.advance(10s);
    loop->requestRefresh();
    loop->requestRefresh();
    release();
    time.advance(999ms);
    EXPECT_THAT(began, ElementsAre(0s));

    time.advance(1ms);
    EXPECT_THAT(began, ElementsAre(0s, 11s));
    // The second failure in a row.
    time.advance(120s);
    EXPECT_THAT(began, ElementsAre(0s, 11s, 131s));
}

TEST_F(RefreshLoopTest, FollowsARequestedCycleAsWell)
{
    loop->startLoop();
    time.advance(100s);
    hold();
    loop->requestRefresh();
    time.advance(5s);
    loop->requestRefresh();
    release();
    time.advance(1s);
    EXPECT_THAT(began, ElementsAre(0s, 100s, 106s));

    time.advance(300s);
    EXPECT_THAT(began, ElementsAre(0s, 100s, 106s, 406s));
}

TEST_F(RefreshLoopTest, DoesNotPutItsOwnTimeOffForAPromise)
{
    loop->startLoop();
    time.advance(298s);
    hold();
    loop->requestRefresh();
    time.advance(1500ms);
    loop->requestRefresh();
    release();
    time.advance(500ms);

    EXPECT_THAT(began, ElementsAre(0s, 298s, 300s));
}

TEST_F(RefreshLoopTest, FollowsSoonThoughTheCycleHasJustBegun)
{
    hold();
    loop->startLoop();
    loop->requestRefresh();
    release();
    time.advance(1s);

    EXPECT_THAT(began, ElementsAre(0s, 1s));
}

TEST_F(RefreshLoopTest, DropsWhatIsAskedRightBeforeThePromisedCycle)
{
    hold();
    loop->startLoop();
    loop->requestRefresh();
    release();
    time.advance(500ms);
    loop->requestRefresh();
    time.advance(10s);

    EXPECT_THAT(began, ElementsAre(0s, 1s));
}

TEST_F(RefreshLoopTest, WaitsForARequestedCycleThatRunsWhenItsTimeComes)
{
    loop->startLoop();
    time.advance(290s);
    hold();
    outcomes = {failed};
    loop->requestRefresh();
    time.advance(30s);
    EXPECT_THAT(began, ElementsAre(0s, 290s));

    release();
    time.advance(60s);
    EXPECT_THAT(began, ElementsAre(0s, 290s, 380s));
}

TEST_F(RefreshLoopTest, KeepsItsOwnTimeThoughARequestedCycleFailed)
{
    loop->startLoop();
    time.advance(298s);
    outcomes = {SyncOutcome::Failed{{SyncReason::Kind::unavailable, 200.0}}};
    loop->requestRefresh();
    time.advance(2s);

    EXPECT_THAT(began, ElementsAre(0s, 298s, 300s));
}

TEST_F(RefreshLoopTest, GoesOnAtOnceAfterASleepInWhichItWasDue)
{
    loop->startLoop();
    time.advance(100s);
    time.sleep(199s);
    time.advance(0s);
    EXPECT_THAT(began, ElementsAre(0s));

    time.sleep(1000s);
    time.advance(299s);
    EXPECT_THAT(began, ElementsAre(0s, 1299s));
}

TEST_F(RefreshLoopTest, LetsACallerWaitForFreshNumbers)
{
    loop->startLoop();
    time.advance(100s);
    hold();
    const test::Pending<void> waiting{loop->refreshed()};
    time.advance(5s);
    EXPECT_FALSE(waiting.isDone());

    release();
    EXPECT_TRUE(waiting.isDone());
    EXPECT_THAT(began, ElementsAre(0s, 100s));
}

TEST_F(RefreshLoopTest, LetsACallerWaitForTheCycleAfterTheOneThatRuns)
{
    hold();
    loop->startLoop();
    const test::Pending<void> waiting{loop->refreshed()};
    release();
    time.advance(999ms);
    EXPECT_FALSE(waiting.isDone());

    time.advance(1ms);
    EXPECT_TRUE(waiting.isDone());
    EXPECT_THAT(began, ElementsAre(0s, 1s));
}

TEST_F(RefreshLoopTest, LetsACallerWaitForItsFirstCycle)
{
    const test::Pending<void> waiting{loop->refreshed()};
    time.advance(100s);
    EXPECT_FALSE(waiting.isDone());

    loop->startLoop();
    time.advance(0s);
    EXPECT_TRUE(waiting.isDone());
    EXPECT_THAT(began, ElementsAre(100s));
}

TEST_F(RefreshLoopTest, LetsNobodyWaitForACycleThatAnotherOneIsTakenFor)
{
    loop->startLoop();
    time.advance(100s);
    hold();
    std::optional<test::Pending<void>> waiting;
    QObject::connect(&state, &AppState::isRefreshingChanged, &state, [&] {
        if (!state.isRefreshing() && !waiting) {
            hold();
            waiting.emplace(loop->refreshed());
        }
    });
    loop->requestRefresh();
    time.advance(5s);
    release();
    EXPECT_THAT(began, ElementsAre(0s, 100s, 105s));
    ASSERT_TRUE(waiting);
    EXPECT_FALSE(waiting->isDone());

    release();
    EXPECT_TRUE(waiting->isDone());
}

TEST_F(RefreshLoopTest, LetsNobodyWaitForACycleThatWasOverAMomentAgo)
{
    loop->startLoop();
    time.advance(1s);
    const test::Pending<void> waiting{loop->refreshed()};

    EXPECT_TRUE(waiting.isDone());
    EXPECT_THAT(began, ElementsAre(0s));
}

TEST_F(RefreshLoopTest, LetsNobodyWaitForACycleThatNeverComes)
{
    hold();
    loop->startLoop();
    const test::Pending<void> waiting{loop->refreshed()};
    loop->stop();
    time.advance(0s);

    EXPECT_TRUE(waiting.isDone());
}

TEST_F(RefreshLoopTest, WritesBeforeItSaysThatItIsDone)
{
    hold();
    loop->startLoop();
    EXPECT_TRUE(state.isRefreshing());
    int writtenWhenDone = -1;
    QObject::connect(&state, &AppState::isRefreshingChanged, &state, [&] { writtenWhenDone = written; });
    release();

    EXPECT_FALSE(state.isRefreshing());
    EXPECT_EQ(writtenWhenDone, 1);
}

TEST_F(RefreshLoopTest, EndsInTheMidstOfItsSleep)
{
    loop->startLoop();
    time.advance(10s);
    loop->stop();
    test::Pending ending{loop->settled()};
    time.advance(0s);

    EXPECT_TRUE(ending.isDone());
    loop->requestRefresh();
    time.advance(1000s);
    EXPECT_THAT(began, ElementsAre(0s));
    EXPECT_EQ(time.pauses(), 0u);
}

TEST_F(RefreshLoopTest, EndsAfterTheCycleThatRuns)
{
    hold();
    loop->startLoop();
    loop->stop();
    test::Pending ending{loop->settled()};
    time.advance(100s);
    EXPECT_FALSE(ending.isDone());

    release();
    EXPECT_TRUE(ending.isDone());
    EXPECT_EQ(written, 1);
}

} // namespace
} // namespace roost
