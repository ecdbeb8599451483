#include "model/Arrival.h"

#include "tests/support/Await.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

QCoro::Task<std::string> wait(Arrival<std::string> arrival)
{
    const auto coming = arrival.coming();
    co_return co_await coming;
}

TEST(Arrival, GivesTheValueThatWasThereBefore)
{
    const Arrival<std::string> arrival;
    EXPECT_FALSE(arrival.isSet());
    arrival.set("value");
    EXPECT_TRUE(arrival.isSet());
    EXPECT_EQ(await(wait(arrival)), "value");
}

TEST(Arrival, WakesWhoWaits)
{
    const Arrival<std::string> arrival;
    Pending waiting(wait(arrival));
    EXPECT_FALSE(waiting.isDone());
    arrival.set("value");
    EXPECT_FALSE(waiting.isDone()) << "from the event loop, not at once";
    EXPECT_EQ(waiting.get(), "value");
}

TEST(Arrival, TakesTheFirstValueAlone)
{
    const Arrival<std::string> arrival;
    Pending waiting(wait(arrival));
    EXPECT_TRUE(arrival.set("first"));
    EXPECT_FALSE(arrival.set("second"));
    EXPECT_EQ(waiting.get(), "first");
    EXPECT_FALSE(arrival.set("third")) << "also when it was taken";
}

TEST(Arrival, OutlivesWhoSetsIt)
{
    auto arrival = std::make_unique<Arrival<std::string>>();
    Pending waiting(wait(*arrival));
    arrival->set("value");
    arrival.reset();
    EXPECT_EQ(waiting.get(), "value");
}

} // namespace
} // namespace roost::test
