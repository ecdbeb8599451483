#include "model/RoostJSON.h"
#include "model/RoostSnapshotFields.h"
#include "tests/programs/roost-service/ServiceUnderTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace roost::local {
namespace {

using namespace std::chrono_literals;
using test::ask;
using test::RawAnswer;
using test::RawClient;
using testing::HasSubstr;

class LocalServiceOverHttp : public test::ServiceUnderTest {};

std::optional<RoostSnapshot> snapshotIn(const RawAnswer& answer)
{
    auto decoded = RoostJSON::decoder().decode<RoostSnapshot>(answer.body().toStdString());
    return decoded ? std::optional(*std::move(decoded)) : std::nullopt;
}

TEST_F(LocalServiceOverHttp, GivesEachTokenTheSnapshotOfItsProfile)
{
    for (std::size_t position = 0; position < 3; ++position) {
        const RawAnswer answer = widget(position);
        EXPECT_EQ(answer.status(), 200);
        EXPECT_EQ(answer.header("Content-Type"), "application/json");
        EXPECT_EQ(answer.header("Connection"), "close");
        EXPECT_EQ(answer.header("Content-Length")->toLongLong(), answer.body().size());
        EXPECT_EQ(answer.header("Date"), "Sun, 15 Jun 2025 15:06:40 GMT");
        EXPECT_EQ(snapshotIn(answer), service_->state().profiles[position].snapshot(now_));
    }
}

TEST_F(LocalServiceOverHttp, AsksForATokenWhereNoneCame)
{
    const RawAnswer answer = get("/api/roost/v1/widget");
    EXPECT_EQ(answer.status(), 401);
    const QByteArray challenge =
        "Bearer resource_metadata=\"" + service_->base() + "/.well-known/oauth-protected-resource\"";
    EXPECT_EQ(answer.header("WWW-Authenticate"), challenge);
}

TEST_F(LocalServiceOverHttp, RefusesTokensThatItDoesNotKnow)
{
    const QByteArray token = QByteArray::fromStdString(service_->standingToken(profileId()));
    for (const QByteArray& value :
         {QByteArray("Bearer nonsense"), "Bearer  " + token, "Basic " + token, token, "Bearer " + token + "x",
          "Bearer " + token + "\r\nAuthorization: Bearer " + token}) {
        const RawAnswer answer = get("/api/roost/v1/widget", "Authorization: " + value + "\r\n");
        EXPECT_EQ(answer.status(), 401) << value.toStdString();
        EXPECT_TRUE(answer.header("WWW-Authenticate")->contains("error=\"invalid_token\""));
    }
    EXPECT_EQ(get("/api/roost/v1/widget", "authorization: bearer " + token + "\r\n").status(), 200);
}

TEST_F(LocalServiceOverHttp, TakesPathsAsTheyAreWritten)
{
    EXPECT_EQ(get("//api/roost/v1/widget", bearer()).status(), 404);
    EXPECT_EQ(get("/api/roost/v1/widget/", bearer()).status(), 404);
    EXPECT_EQ(get("/api/roost/v1/widge%74", bearer()).status(), 404);
    EXPECT_EQ(get("/api/roost/v1/widget?x=%7E", bearer()).status(), 200);
    const QJsonObject last = state().value(QStringLiteral("last")).toObject();
    EXPECT_EQ(last.value(QStringLiteral("widget")).toObject().value(QStringLiteral("query")).toString(),
              QStringLiteral("x=%7E"));
}

TEST_F(LocalServiceOverHttp, AnswersOnlyTheMethodsItKnows)
{
    const RawAnswer answer = ask(service_->base(), "POST", "/api/roost/v1/widget", bearer(), "x");
    EXPECT_EQ(answer.status(), 405);
    EXPECT_EQ(answer.header("Allow"), "GET");
    EXPECT_EQ(ask(service_->base(), "DELETE", "/roost/overview").status(), 405);
}

TEST_F(LocalServiceOverHttp, AnswersNobodyWhoCallsItByAnotherName)
{
    RawClient client(test::portOf(service_->base()));
    client.send("GET /roost/overview HTTP/1.1\r\nHost: roost.example\r\n\r\n");
    EXPECT_EQ(client.answer().status(), 421);
    RawClient local(test::portOf(service_->base()));
    local.send("GET /roost/overview HTTP/1.1\r\nHost: LOCALHOST:99\r\n\r\n");
    EXPECT_EQ(local.answer().status(), 200);
}

TEST_F(LocalServiceOverHttp, AnswersOneRequestPerConnection)
{
    RawClient client(test::portOf(service_->base()));
    const QByteArray request = test::requestText("GET", "/api/roost/v1/widget", bearer());
    client.send(request + request);
    const RawAnswer answer = client.answer();
    EXPECT_EQ(answer.bytes.count("HTTP/1.1 "), 1);
    EXPECT_EQ(service_->state().counters.requests(Endpoint::widget), 1);
}

TEST_F(LocalServiceOverHttp, ReadsARequestThatComesInPieces)
{
    RawClient client(test::portOf(service_->base()));
    int pieces = 0;
    for (const char byte : test::requestText("GET", "/api/roost/v1/widget", bearer())) {
        client.send(QByteArray(1, byte));
        ++pieces;
        EXPECT_TRUE(roost::test::runUntil([turns = 0]() mutable { return ++turns > 1; }));
    }
    EXPECT_GT(pieces, 50);
    EXPECT_EQ(client.answer().status(), 200);
}

TEST_F(LocalServiceOverHttp, ClosesAConnectionThatDoesNotSpeakHttp)
{
    RawClient client(test::portOf(service_->base()));
    client.send("HELO roost\r\n\r\n");
    EXPECT_EQ(client.answer().bytes, "");
}

TEST_F(LocalServiceOverHttp, ShowsThePagesThatSnapshotsLinkTo)
{
    const RawAnswer overview = get("/roost/overview?post=x");
    EXPECT_EQ(overview.status(), 200);
    EXPECT_EQ(overview.header("Content-Type"), "text/html; charset=utf-8");
    EXPECT_THAT(overview.body().toStdString(), HasSubstr("Harbour Light Studio"));
    EXPECT_EQ(get("/roost/avatars/harbour-light.svg").header("Content-Type"), "image/svg+xml");
    EXPECT_EQ(get("/roost/avatars/nobody.svg").status(), 404);
    EXPECT_EQ(get("/").status(), 404);
}

TEST_F(LocalServiceOverHttp, WritesTheNamesOfProfilesAsTextIntoItsPages)
{
    start({.profiles = 6});
    EXPECT_THAT(get("/roost/overview").body().toStdString(), HasSubstr("Fjell &amp; Fjord &lt;ute&gt;"));
}

TEST_F(LocalServiceOverHttp, LetsTheNumbersLiveWithTheClock)
{
    const auto before = snapshotIn(widget());
    now_ += 3h;
    const auto after = snapshotIn(widget());
    ASSERT_TRUE(before && after);
    EXPECT_GT(after->views.total, before->views.total);
    EXPECT_EQ(after->generatedAt, before->generatedAt + 3h);
}

TEST_F(LocalServiceOverHttp, GivesTheSameNumbersAndTokensForTheSameSeed)
{
    const QByteArray body = widget().body();
    const std::string token = service_->standingToken(profileId());
    const QByteArray oldBase = service_->base();
    start();
    EXPECT_EQ(service_->standingToken(profileId()), token);
    EXPECT_EQ(widget().body().replace(service_->base(), oldBase), body);
}

TEST_F(LocalServiceOverHttp, ListensOnTheLoopbackAddressAlone)
{
    EXPECT_TRUE(service_->base().startsWith("http://127.0.0.1:"));
    EXPECT_TRUE(service_->control().startsWith("http://127.0.0.1:"));
    EXPECT_NE(service_->base(), service_->control());
}

TEST_F(LocalServiceOverHttp, SaysWhyItCannotStart)
{
    ServiceOptions options;
    options.port = test::portOf(service_->base());
    LocalService second(options, [this] { return now_; }, seededRandomBytes(1));
    const auto started = second.start();
    ASSERT_FALSE(started);
    EXPECT_THAT(started.error().toStdString(), HasSubstr("cannot listen on 127.0.0.1:"));
}

TEST_F(LocalServiceOverHttp, EndsWhileAnswersAreOnTheirWay)
{
    control("/scenario", R"({"kind":"hang","processed":true})");
    RawClient client(test::portOf(service_->base()));
    client.send(test::requestText("GET", "/api/roost/v1/widget", bearer()));
    EXPECT_TRUE(
        roost::test::runUntil([this] { return service_->state().counters.requests(Endpoint::widget) == 1; }));
    service_.reset();
    EXPECT_EQ(client.answer().bytes, "");
}

} // namespace
} // namespace roost::local
