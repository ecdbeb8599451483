#include "programs/roost-service/ScenarioBook.h"

#include <gtest/gtest.h>

#include <QJsonDocument>

namespace roost::local {
namespace {

Scenario statusOf(int status, std::optional<int> times = std::nullopt)
{
    Scenario scenario;
    scenario.status = status;
    scenario.times = times;
    return scenario;
}

int statusTaken(ScenarioBook& book, const std::optional<std::string>& profile,
                Endpoint endpoint = Endpoint::widget)
{
    const auto scenario = book.take(profile, endpoint);
    return scenario ? scenario->status : 0;
}

TEST(ScenarioBook, PrefersTheScenarioOfTheProfileToThatOfEveryone)
{
    ScenarioBook book;
    book.set("*", Endpoint::widget, statusOf(503));
    book.set("a", Endpoint::widget, statusOf(404));
    EXPECT_EQ(statusTaken(book, "a"), 404);
    EXPECT_EQ(statusTaken(book, "b"), 503);
    EXPECT_EQ(statusTaken(book, std::nullopt), 503);
    EXPECT_EQ(statusTaken(book, "a", Endpoint::token), 0);
}

TEST(ScenarioBook, EndsAScenarioAfterItsTimes)
{
    ScenarioBook book;
    book.set("a", Endpoint::widget, statusOf(500, 2));
    EXPECT_EQ(statusTaken(book, "a"), 500);
    EXPECT_EQ(statusTaken(book, "b"), 0);
    EXPECT_EQ(statusTaken(book, "a"), 500);
    EXPECT_EQ(statusTaken(book, "a"), 0);
}

TEST(ScenarioBook, GoesOnForEverWithoutTimes)
{
    ScenarioBook book;
    book.set("*", Endpoint::widget, statusOf(500));
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(statusTaken(book, "a"), 500);
    }
    book.set("*", Endpoint::widget, std::nullopt);
    EXPECT_EQ(statusTaken(book, "a"), 0);
}

TEST(ScenarioBook, TellsWhatIsInForce)
{
    ScenarioBook book;
    book.set("a", Endpoint::widget, statusOf(500, 2));
    book.set("a", Endpoint::token, statusOf(500));
    EXPECT_EQ(QJsonDocument(book.toJson()).toJson(QJsonDocument::Compact),
              R"({"a":{"token":{"kind":"status"},"widget":{"kind":"status","times":2}}})");
    book.clear();
    EXPECT_TRUE(book.toJson().isEmpty());
}

} // namespace
} // namespace roost::local
