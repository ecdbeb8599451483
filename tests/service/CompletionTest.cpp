#include "service/Completion.h"

#include "tests/support/Await.h"

#include <gmock/gmock.h>

#include <thread>

namespace roost::test {

namespace {

using testing::ElementsAre;
using testing::Optional;

/// Appends what it got to `heard`.
QCoro::Task<void> hear(QCoro::Task<std::optional<int>> waiting, std::vector<std::optional<int>>* heard)
{
    const std::optional<int> result = co_await waiting;
    heard->push_back(result);
}

/// Waits, and then does `deed`.
QCoro::Task<void> waitAndDo(QCoro::Task<std::optional<int>> waiting, std::function<void()> deed)
{
    co_await waiting;
    deed();
}

} // namespace

TEST(Completion, GivesItsResultToAllThatWaitAndToAllThatAskLater)
{
    Completion<int> completion;
    Pending first(completion.wait({}));
    Pending second(completion.wait({}));
    EXPECT_FALSE(completion.isComplete());
    EXPECT_FALSE(first.isDone());

    completion.complete(7);

    EXPECT_TRUE(completion.isComplete());
    EXPECT_TRUE(first.isDone());
    EXPECT_THAT(first.get(), Optional(7));
    EXPECT_THAT(second.get(), Optional(7));
    EXPECT_THAT(await(completion.wait({})), Optional(7));
}

TEST(Completion, WakesInTheOrderOfArrival)
{
    Completion<int> completion;
    std::vector<int> woken;
    std::vector<QCoro::Task<void>> tasks;
    for (int i = 0; i < 3; ++i) {
        tasks.push_back(waitAndDo(completion.wait({}), [&woken, i] { woken.push_back(i); }));
    }
    completion.complete(1);
    EXPECT_THAT(woken, ElementsAre(0, 1, 2));
}

TEST(Completion, LetsOneStopWaitingAndServesTheOthers)
{
    Completion<int> completion;
    std::stop_source stop;
    Pending stopped(completion.wait(stop.get_token()));
    Pending other(completion.wait({}));

    stop.request_stop();
    EXPECT_FALSE(stopped.isDone()); // not within the request
    EXPECT_EQ(stopped.get(), std::nullopt);
    EXPECT_FALSE(other.isDone());

    completion.complete(7);
    EXPECT_THAT(other.get(), Optional(7));
}

TEST(Completion, GivesNothingAfterAStopEvenWhenThereIsAResult)
{
    Completion<int> completion;
    std::stop_source stop;
    Pending waiting(completion.wait(stop.get_token()));
    stop.request_stop();
    completion.complete(7);

    EXPECT_TRUE(waiting.isDone());
    EXPECT_EQ(waiting.get(), std::nullopt);
    EXPECT_EQ(await(completion.wait(stop.get_token())), std::nullopt);
    QCoreApplication::sendPostedEvents(); // the stop comes after its waiter has gone
}

TEST(Completion, HearsAStopFromAnotherThread)
{
    Completion<int> completion;
    std::stop_source stop;
    Pending waiting(completion.wait(stop.get_token()));
    std::jthread([&stop] { stop.request_stop(); }).join();

    EXPECT_EQ(waiting.get(), std::nullopt);
}

TEST(Completion, MayBeDestroyedByAWaiterWhileOthersWait)
{
    auto completion = std::make_unique<Completion<int>>();
    std::vector<std::optional<int>> heard;
    const QCoro::Task<void> destroying =
        waitAndDo(completion->wait({}), [&completion] { completion.reset(); });
    const QCoro::Task<void> waiting = hear(completion->wait({}), &heard);

    completion->complete(7);

    EXPECT_EQ(completion, nullptr);
    EXPECT_THAT(heard, ElementsAre(Optional(7)));
}

TEST(Completion, MayBeWaitedForAgainByAWaiter)
{
    Completion<int> completion;
    std::vector<std::optional<int>> heard;
    QCoro::Task<void> again;
    const QCoro::Task<void> waiting =
        waitAndDo(completion.wait({}), [&] { again = hear(completion.wait({}), &heard); });

    completion.complete(7);

    EXPECT_THAT(heard, ElementsAre(Optional(7)));
}

TEST(Completion, LetsAWaiterStopAnotherAndTurnTheEventLoop)
{
    Completion<int> completion;
    std::stop_source stop;
    std::vector<std::optional<int>> heard;
    const QCoro::Task<void> stopping = waitAndDo(completion.wait({}), [&stop] {
        stop.request_stop();
        QCoreApplication::sendPostedEvents();
    });
    const QCoro::Task<void> stopped = hear(completion.wait(stop.get_token()), &heard);
    const QCoro::Task<void> other = hear(completion.wait({}), &heard);

    completion.complete(7);

    EXPECT_THAT(heard, ElementsAre(std::nullopt, Optional(7)));
}

} // namespace roost::test
