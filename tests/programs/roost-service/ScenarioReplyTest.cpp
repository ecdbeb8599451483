#include "programs/roost-service/ScenarioReply.h"

#include "tests/programs/roost-service/ServiceUnderTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QElapsedTimer>

namespace roost::local {
namespace {

using namespace std::chrono_literals;
using test::RawAnswer;
using test::RawClient;
using testing::HasSubstr;

/// Each kind of scenario as it reaches a client.
class ScenarioReply : public test::ServiceUnderTest {
protected:
    void set(const QByteArray& json) { control("/scenario", json); }
};

TEST_F(ScenarioReply, AnswersWithAStatusAndItsRetryAfter)
{
    set(R"({"kind":"status","status":503,"retryAfter":"120"})");
    EXPECT_EQ(widget().status(), 503);
    EXPECT_EQ(widget().header("Retry-After"), "120");
    set(R"({"kind":"status","status":600,"body":"<html>"})");
    EXPECT_EQ(widget().status(), 600);
    EXPECT_EQ(widget().body(), "<html>");
    EXPECT_EQ(widget().header("Retry-After"), std::nullopt);
}

TEST_F(ScenarioReply, AppliesToOneProfileAndSoManyTimes)
{
    set(R"({"kind":"status","status":403,"profile":"cafe-morgenrot","times":1})");
    EXPECT_EQ(widget(0).status(), 200);
    EXPECT_EQ(widget(1).status(), 403);
    EXPECT_EQ(widget(1).status(), 200);
}

TEST_F(ScenarioReply, BreaksTheBody)
{
    set(R"({"kind":"malformed"})");
    EXPECT_EQ(widget().status(), 200);
    EXPECT_TRUE(QJsonDocument::fromJson(widget().body()).isNull());
    set(R"({"kind":"empty"})");
    EXPECT_EQ(widget().status(), 200);
    EXPECT_EQ(widget().body(), "");
    set(R"({"kind":"body","body":"{\"version\":1}"})");
    EXPECT_EQ(widget().body(), R"({"version":1})");
}

TEST_F(ScenarioReply, SendsAHugeBodyThatIsValidJson)
{
    set(R"({"kind":"huge","bytes":3000000})");
    const RawAnswer answer = widget();
    EXPECT_EQ(answer.body().size(), 3'000'000);
    EXPECT_TRUE(QJsonDocument::fromJson(answer.body()).isObject());
}

TEST_F(ScenarioReply, CutsTheBodyShortOfItsPromise)
{
    set(R"({"kind":"truncated","bytes":17})");
    const RawAnswer answer = widget();
    EXPECT_EQ(answer.status(), 200);
    EXPECT_EQ(answer.body().size(), 17);
    EXPECT_GT(answer.header("Content-Length")->toInt(), 500);
    EXPECT_FALSE(answer.wasReset);
}

TEST_F(ScenarioReply, CompressesTheOrdinaryAnswer)
{
    const QByteArray plain = widget().body();
    set(R"({"kind":"gzip"})");
    const RawAnswer answer = widget();
    EXPECT_EQ(answer.header("Content-Encoding"), "gzip");
    EXPECT_LT(answer.body().size(), plain.size());
    EXPECT_TRUE(answer.body().startsWith("\x1f\x8b"));
}

TEST_F(ScenarioReply, HidesALotBehindAFewBytes)
{
    set(R"({"kind":"gzip-bomb","bytes":9000000})");
    const RawAnswer answer = widget();
    EXPECT_EQ(answer.header("Content-Encoding"), "gzip");
    EXPECT_LT(answer.body().size(), 20'000);
}

TEST_F(ScenarioReply, RedirectsElsewhere)
{
    set(R"({"kind":"redirect","status":308,"location":"http://127.0.0.1:9/x"})");
    EXPECT_EQ(widget().status(), 308);
    EXPECT_EQ(widget().header("Location"), "http://127.0.0.1:9/x");
}

TEST_F(ScenarioReply, AddsAndReplacesHeaders)
{
    set(R"({"kind":"headers","headers":{"Set-Cookie":"a=b","content-type":"text/html"}})");
    const RawAnswer answer = widget();
    EXPECT_EQ(answer.header("Set-Cookie"), "a=b");
    EXPECT_EQ(answer.header("Content-Type"), "text/html");
    EXPECT_EQ(answer.bytes.toLower().count("content-type:"), 1);
}

TEST_F(ScenarioReply, SpeaksSomethingElseThanHttp)
{
    set(R"({"kind":"not-http"})");
    EXPECT_EQ(widget().status(), 0);
    EXPECT_TRUE(widget().bytes.startsWith("SSH-"));
}

TEST_F(ScenarioReply, ClosesWithoutAnAnswer)
{
    set(R"({"kind":"drop"})");
    const RawAnswer answer = widget();
    EXPECT_EQ(answer.bytes, "");
    EXPECT_FALSE(answer.wasReset);
    EXPECT_EQ(service_->state().counters.requests(Endpoint::widget), 1);
}

TEST_F(ScenarioReply, ResetsTheConnection)
{
    set(R"({"kind":"reset"})");
    const RawAnswer answer = widget();
    EXPECT_EQ(answer.bytes, "");
    EXPECT_TRUE(answer.wasReset);
}

TEST_F(ScenarioReply, LeavesTheConnectionOpenWithoutAnAnswer)
{
    set(R"({"kind":"hang"})");
    RawClient client(test::portOf(service_->base()));
    client.send(test::requestText("GET", "/api/roost/v1/widget", bearer()));
    EXPECT_TRUE(
        roost::test::runUntil([this] { return service_->state().counters.requests(Endpoint::widget) == 1; }));
    // Others are answered meanwhile.
    set(R"({"kind":"none"})");
    EXPECT_EQ(widget().status(), 200);
    EXPECT_FALSE(client.isEnded());
    EXPECT_EQ(client.received(), "");
}

TEST_F(ScenarioReply, DripsTheBodyAfterItsHead)
{
    set(R"({"kind":"drip","bytes":1,"delayMs":3600000})");
    RawClient client(test::portOf(service_->base()));
    client.send(test::requestText("GET", "/api/roost/v1/widget", bearer()));
    EXPECT_TRUE(roost::test::runUntil([&] { return client.received().endsWith("\r\n\r\n{"); }));
    EXPECT_FALSE(client.isEnded());
}

TEST_F(ScenarioReply, DripsTheHeadToo)
{
    set(R"({"kind":"drip-head","bytes":2,"delayMs":3600000})");
    RawClient client(test::portOf(service_->base()));
    client.send(test::requestText("GET", "/api/roost/v1/widget", bearer()));
    EXPECT_TRUE(roost::test::runUntil([&] { return client.received() == "HT"; }));
}

TEST_F(ScenarioReply, DripsUntilAllHasCome)
{
    const QByteArray plain = widget().body();
    set(R"({"kind":"drip","bytes":100,"delayMs":0})");
    EXPECT_EQ(widget().body(), plain);
    set(R"({"kind":"drip-head","bytes":100,"delayMs":0})");
    EXPECT_EQ(widget().body(), plain);
}

TEST_F(ScenarioReply, AnswersLate)
{
    for (const QByteArray& processed : {QByteArray("true"), QByteArray("false")}) {
        set(R"({"kind":"delay","delayMs":40,"processed":)" + processed + "}");
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(widget().status(), 200);
        EXPECT_GE(timer.elapsed(), 40);
    }
}

TEST_F(ScenarioReply, LivesInAnotherTime)
{
    set(R"({"kind":"clock-offset","seconds":-86400})");
    const RawAnswer answer = widget();
    EXPECT_THAT(answer.body().toStdString(), HasSubstr(R"("generatedAt":"2025-06-14T15:06:40.123Z")"));
    EXPECT_EQ(answer.header("Date"), "Sat, 14 Jun 2025 15:06:40 GMT");
}

TEST_F(ScenarioReply, CarriesARequestOutOnceAndOnlyWhereItIsSaid)
{
    for (const auto kind :
         {Scenario::Kind::drop, Scenario::Kind::reset, Scenario::Kind::hang, Scenario::Kind::notHttp}) {
        Scenario scenario;
        scenario.kind = kind;
        const auto ordinary = [](std::chrono::seconds) { return Answer{}; };
        EXPECT_FALSE(scenarioReply(scenario, ordinary).carryOut);
        scenario.processed = true;
        EXPECT_TRUE(scenarioReply(scenario, ordinary).carryOut);
    }
}

} // namespace
} // namespace roost::local
