#include "service/OAuthClient.h"

#include "service/InMemorySecretStore.h"
#include "service/NetworkHttpSession.h"
#include "tests/support/Await.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/OAuthFixture.h"
#include "tests/support/ScriptedService.h"

#include <gmock/gmock.h>

namespace roost::test {

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

using Discovery = OAuthClient::Discovery;
using Kind = RoostAuthError::Kind;
using Why = SecretsUnavailable::Why;

const std::string clientIDKey = "client-id|https://roost.example";

QByteArray zeros(std::size_t count) { return {static_cast<qsizetype>(count), '\0'}; }

class OAuthClientTest : public testing::Test {
protected:
    OAuthClientTest()
    {
        service.answer(path::metadata, 200, metadataOfExample());
        service.answer(path::registration, 201, R"({"client_id":"registered"})");
        service.answer(path::token, 200, tokensOfExample("A", "R2"));
    }

    AuthResult<OAuthEndpoints> endpoints(Discovery discovery = Discovery::cached)
    {
        return await(client.endpoints(discovery, {}));
    }
    AuthResult<std::string> clientID() { return await(client.clientID(endpointsOfExample(), {})); }
    bool isKnown() { return await(client.clientIsKnown("c 1", endpointsOfExample(), {})); }
    AuthResult<AuthorizationRequest> request() { return await(client.authorizationRequest(zeros, {})); }
    AuthResult<TokenSet> refresh(const std::string& token = "R1") { return await(client.refresh(token, {})); }

    template <class T>
    static void expectError(const AuthResult<T>& result, RoostAuthError expected)
    {
        ASSERT_FALSE(result.has_value());
        EXPECT_EQ(result.error(), AuthFailure{expected});
    }
    template <class T>
    static void expectKind(const AuthResult<T>& result, Kind kind)
    {
        ASSERT_FALSE(result.has_value());
        EXPECT_TRUE(isAuthError(result.error(), kind)) << describe(result.error());
    }

    ScriptedService service;
    InMemorySecretStore secrets;
    Date now = Date(std::chrono::milliseconds(1'718'000'000'123));
    int readings = 0;
    OAuthClient client{QUrl{QStringLiteral("https://roost.example")}, service.session(), secrets, [this] {
                           ++readings;
                           return now;
                       }};
    LogCatcher log;
};

using Discovering = OAuthClientTest;
using Registering = OAuthClientTest;
using Probing = OAuthClientTest;
using Authorizing = OAuthClientTest;
using Exchanging = OAuthClientTest;
using Refreshing = OAuthClientTest;

} // namespace

TEST_F(Discovering, AsksForBothDocumentsAndGivesTheEndpoints)
{
    EXPECT_EQ(endpoints(), endpointsOfExample());
    ASSERT_THAT(service.paths(), ElementsAre(path::metadata, path::resource));
    for (const HttpRequest& sent : service.requests()) {
        EXPECT_EQ(sent.method, HttpRequest::Method::get);
        EXPECT_THAT(sent.headers,
                    ElementsAre(std::pair{QByteArray("Accept"), QByteArray("application/json")}));
        EXPECT_EQ(sent.timeout, 60s);
    }
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Discovering, AppendsThePathsToABaseWithAPath)
{
    const OAuthClient other{QUrl{QStringLiteral("https://roost.example/base/")}, service.session(), secrets,
                            [this] { return now; }};
    expectKind(await(other.endpoints(Discovery::cached, {})), Kind::unexpectedResponse);
    EXPECT_THAT(service.paths(), ElementsAre("/base/.well-known/oauth-authorization-server"));
}

TEST_F(Discovering, TakesTheResourceThatTheServiceNames)
{
    service.answer(path::resource, 200, R"({"resource":"urn:any thing"})");
    EXPECT_EQ(endpoints()->resource, "urn:any thing");
}

TEST_F(Discovering, GoesOnWithoutTheResourceDocument)
{
    const HttpResult failures[] = {HttpResponse{404, {}, "{}"},
                                   HttpResponse{200, {}, "<html>"},
                                   HttpResponse{200, {}, R"({"resource":""})"},
                                   std::unexpected(HttpFailure{HttpFailure::Kind::transport, -1004}),
                                   std::unexpected(HttpFailure{HttpFailure::Kind::notHttp, 0}),
                                   std::unexpected(HttpFailure{HttpFailure::Kind::bodyTooLarge, -1103})};
    for (const HttpResult& failure : failures) {
        service.answerOnly(path::resource, failure);
        EXPECT_EQ(endpoints(Discovery::forced)->resource, "https://roost.example/mcp");
    }
}

TEST_F(Discovering, IsRememberedForAnHour)
{
    ASSERT_TRUE(endpoints().has_value());
    now += 3599s + 900ms;
    ASSERT_TRUE(endpoints().has_value());
    EXPECT_THAT(service.requests(), SizeIs(2));
    now += 100ms;
    ASSERT_TRUE(endpoints().has_value());
    EXPECT_THAT(service.requests(), SizeIs(4));
}

TEST_F(Discovering, ReadsTheClockBeforeAndAfter)
{
    ASSERT_TRUE(endpoints().has_value());
    EXPECT_EQ(readings, 2);
    ASSERT_TRUE(endpoints().has_value());
    EXPECT_EQ(readings, 3);
    ASSERT_TRUE(endpoints(Discovery::forced).has_value());
    EXPECT_EQ(readings, 4);
}

TEST_F(Discovering, CountsTheHourFromTheEndOfTheDiscovery)
{
    InProcessHttpSession slow([this](HttpRequest request, std::stop_token stop) {
        now += 1800s;
        return service.session().send(std::move(request), std::move(stop));
    });
    const OAuthClient patient{QUrl{QStringLiteral("https://roost.example")}, slow, secrets,
                              [this] { return now; }};
    ASSERT_TRUE(await(patient.endpoints(Discovery::cached, {})).has_value());
    now += 3599s;
    ASSERT_TRUE(await(patient.endpoints(Discovery::cached, {})).has_value());
    EXPECT_THAT(service.requests(), SizeIs(2));
}

TEST_F(Discovering, StaysRememberedWhenTheClockIsSetBack)
{
    ASSERT_TRUE(endpoints().has_value());
    now -= 24h;
    ASSERT_TRUE(endpoints().has_value());
    EXPECT_THAT(service.requests(), SizeIs(2));
}

TEST_F(Discovering, AsksAgainWhenForcedAndKeepsTheOldOnFailure)
{
    ASSERT_TRUE(endpoints().has_value());
    service.answerOnly(path::metadata, 500, "");
    expectError(endpoints(Discovery::forced), RoostAuthError::unexpectedResponse(500));
    EXPECT_EQ(endpoints(), endpointsOfExample());
}

TEST_F(Discovering, IsNotRememberedWhenItFailed)
{
    service.answerOnly(path::metadata, 200, "{}");
    expectKind(endpoints(), Kind::malformedResponse);
    service.answerOnly(path::metadata, 200, metadataOfExample());
    EXPECT_EQ(endpoints(), endpointsOfExample());
}

TEST_F(Discovering, LogsTheHostAndTheCodeOfAFailedRequestAndNothingElse)
{
    service.answerOnly(path::metadata, std::unexpected(HttpFailure{HttpFailure::Kind::transport, -1004}));
    expectKind(endpoints(), Kind::unreachable);
    EXPECT_THAT(log.lines(),
                ElementsAre(LogCatcher::Line{QtCriticalMsg, "world.brisken.roost.mac.auth",
                                             QStringLiteral("request to roost.example failed: -1004")}));
}

TEST_F(Discovering, TellsAStopFromAFailure)
{
    service.answerOnly(path::metadata, std::unexpected(HttpFailure{HttpFailure::Kind::cancelled, -999}));
    EXPECT_EQ(endpoints().error(), AuthFailure{Stopped{}});
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Discovering, IsNotFinishedByAStopAtItsSecondDocument)
{
    service.answerOnly(path::resource, std::unexpected(HttpFailure{HttpFailure::Kind::cancelled, -999}));
    EXPECT_EQ(endpoints().error(), AuthFailure{Stopped{}});
    EXPECT_EQ(readings, 1);
}

TEST_F(Discovering, TakesWhatIsNoHttpForMalformed)
{
    service.answerOnly(path::metadata, std::unexpected(HttpFailure{HttpFailure::Kind::notHttp, 0}));
    expectKind(endpoints(), Kind::malformedResponse);
}

TEST_F(Discovering, TakesATooLargeBodyForMalformedAndLogsIt)
{
    service.answerOnly(path::metadata, std::unexpected(HttpFailure{HttpFailure::Kind::bodyTooLarge, -1103}));
    expectKind(endpoints(), Kind::malformedResponse);
    EXPECT_TRUE(log.saw(u"request to roost.example failed: -1103"));
}

TEST_F(Registering, GivesTheStoredIdWithoutAskingAnybody)
{
    secrets.values[clientIDKey] = "stored";
    EXPECT_EQ(clientID(), "stored");
    EXPECT_THAT(service.requests(), IsEmpty());
}

TEST_F(Registering, StoresTheNewId)
{
    EXPECT_EQ(clientID(), "registered");
    EXPECT_EQ(secrets.values[clientIDKey], "registered");
    EXPECT_EQ(clientID(), "registered");
    EXPECT_THAT(service.requests(path::registration), SizeIs(1));
}

TEST_F(Registering, ReplacesAnEmptyStoredId)
{
    secrets.values[clientIDKey] = "";
    EXPECT_EQ(clientID(), "registered");
}

TEST_F(Registering, ServesAnIdThatCouldNotBeStoredWithoutRegisteringAgain)
{
    secrets.failWrites = true;
    EXPECT_EQ(clientID(), "registered");
    EXPECT_EQ(clientID(), "registered");
    EXPECT_THAT(service.requests(path::registration), SizeIs(1));
}

TEST_F(Registering, DoesNotHappenWhileTheStoreCannotTell)
{
    for (const Why why : {Why::locked, Why::notAnswering}) {
        secrets.unavailable = SecretsUnavailable{why};
        EXPECT_EQ(clientID().error(), AuthFailure{SecretsUnavailable{why}});
        EXPECT_EQ(request().error(), AuthFailure{SecretsUnavailable{why}});
    }
    EXPECT_THAT(service.requests(path::registration), IsEmpty());
}

TEST_F(Registering, FailsAsTheServerRefuses)
{
    service.answerOnly(path::registration, 400, R"({"error":"invalid_client"})");
    expectKind(clientID(), Kind::invalidClient);
    service.answerOnly(path::registration, 403, "");
    expectError(clientID(), RoostAuthError::unexpectedResponse(403));
    service.answerOnly(path::registration, 201, R"({"client_id":""})");
    expectKind(clientID(), Kind::malformedResponse);
    EXPECT_TRUE(secrets.values.empty());
}

TEST_F(Probing, SendsARefreshThatCannotSucceed)
{
    static_cast<void>(isKnown());
    ASSERT_THAT(service.requests(path::token), SizeIs(1));
    EXPECT_EQ(service.requests().front().body, "client_id=c%201&grant_type=refresh_token&refresh_token=probe"
                                               "&resource=https%3A%2F%2Froost.example%2Fmcp");
}

TEST_F(Probing, DoubtsAClientOnlyAfter401WithInvalidClient)
{
    service.answerOnly(path::token, 401, R"({"error":"invalid_client"})");
    EXPECT_FALSE(isKnown());
    for (const auto& [status, body] :
         std::vector<std::pair<int, std::string>>{{400, R"({"error":"invalid_client"})"},
                                                  {401, R"({"error":"invalid_grant"})"},
                                                  {401, ""},
                                                  {403, R"({"error":"invalid_client"})"},
                                                  {400, R"({"error":"invalid_grant"})"},
                                                  {200, "{}"},
                                                  {500, ""}}) {
        service.answerOnly(path::token, status, body);
        EXPECT_TRUE(isKnown()) << status << body;
    }
}

TEST_F(Probing, TrustsAClientWhenNoAnswerComes)
{
    for (const auto kind : {HttpFailure::Kind::transport, HttpFailure::Kind::cancelled,
                            HttpFailure::Kind::notHttp, HttpFailure::Kind::bodyTooLarge}) {
        service.answerOnly(path::token, std::unexpected(HttpFailure{kind, 0}));
        EXPECT_TRUE(isKnown());
    }
}

TEST_F(Authorizing, RegistersOnceAndProbesNobodyNew)
{
    const auto made = request();
    ASSERT_TRUE(made.has_value());
    EXPECT_EQ(made->clientID, "registered");
    EXPECT_THAT(service.paths(), ElementsAre(path::metadata, path::resource, path::registration));
}

TEST_F(Authorizing, DrawsTheVerifierThenTheState)
{
    const auto made = request();
    ASSERT_TRUE(made.has_value());
    EXPECT_EQ(made->verifier, std::string(43, 'A'));
    EXPECT_EQ(made->state, std::string(22, 'A'));
    EXPECT_THAT(made->url.text(), HasSubstr("&code_challenge=DwBzhbb51LfusnSGBa_hqYSgo7-j8BTQnip4TOnlzRo&"));

    std::vector<std::size_t> drawn;
    static_cast<void>(await(client.authorizationRequest(
        [&drawn](std::size_t count) {
            drawn.push_back(count);
            return zeros(count);
        },
        {})));
    EXPECT_THAT(drawn, ElementsAre(32, 16));
}

TEST_F(Authorizing, KeepsAStoredClientThatTheServerKnows)
{
    secrets.values[clientIDKey] = "stored";
    service.answerOnly(path::token, 400, R"({"error":"invalid_grant"})");
    EXPECT_EQ(request()->clientID, "stored");
    EXPECT_THAT(service.paths(), ElementsAre(path::metadata, path::resource, path::token));
}

TEST_F(Authorizing, RegistersAnewWhenTheServerForgotTheClient)
{
    secrets.values[clientIDKey] = "stored";
    service.answerOnly(path::token, 401, R"({"error":"invalid_client"})");
    EXPECT_EQ(request()->clientID, "registered");
    EXPECT_EQ(secrets.values[clientIDKey], "registered");
    EXPECT_THAT(service.paths(),
                ElementsAre(path::metadata, path::resource, path::token, path::registration));
}

TEST_F(Authorizing, RegistersForThisRunOnAMachineWithoutAStore)
{
    secrets.unavailable = SecretsUnavailable{Why::noService};
    EXPECT_EQ(request()->clientID, "registered");
    EXPECT_EQ(clientID(), "registered");
    EXPECT_THAT(service.requests(path::registration), SizeIs(1));
    EXPECT_FALSE(await(client.storeClientIDs()));
    secrets.unavailable.reset();
    EXPECT_TRUE(await(client.storeClientIDs()));
    EXPECT_EQ(secrets.values[clientIDKey], "registered");
}

TEST_F(Authorizing, PassesOnWhatDiscoveryAndRegistrationFailedWith)
{
    service.answerOnly(path::registration, 500, "");
    expectError(request(), RoostAuthError::unexpectedResponse(500));
    service.answerOnly(path::metadata, 200, "{}");
    now += 3600s;
    expectKind(request(), Kind::malformedResponse);
}

TEST_F(Exchanging, AsksTheEndpointOfTheRequestEvenAfterADiscoveryElsewhere)
{
    auto authorization = *request();
    authorization.endpoints.tokenEndpoint = *WebURL::parse("https://roost.example/other/token");
    service.answer("/other/token", 200, tokensOfExample("A", "R"));
    EXPECT_EQ(await(client.exchange("code", authorization, {})),
              (TokenSet{"A", "R", now + 300s, "metrics:read"}));
    EXPECT_THAT(service.requests().back().body, HasSubstr("code=code&"));
}

TEST_F(Exchanging, FailsAsTheServerRefuses)
{
    const auto authorization = *request();
    service.answerOnly(path::token, 400, R"({"error":"invalid_grant"})");
    expectKind(await(client.exchange("code", authorization, {})), Kind::invalidGrant);
    service.answerOnly(path::token, 500, "<html>");
    expectError(await(client.exchange("code", authorization, {})), RoostAuthError::unexpectedResponse(500));
}

TEST_F(Exchanging, LeavesTheClientIdWhenTheServerDoesNotKnowIt)
{
    const auto authorization = *request();
    service.answerOnly(path::token, 401, R"({"error":"invalid_client"})");
    expectKind(await(client.exchange("code", authorization, {})), Kind::invalidClient);
    EXPECT_EQ(secrets.values[clientIDKey], "registered");
}

TEST_F(Refreshing, CountsTheLifetimeFromTheAnswer)
{
    secrets.values[clientIDKey] = "stored";
    EXPECT_EQ(refresh(), (TokenSet{"A", "R2", now + 300s, "metrics:read"}));
    EXPECT_EQ(service.requests(path::token).front().body,
              "client_id=stored&grant_type=refresh_token&refresh_token=R1"
              "&resource=https%3A%2F%2Froost.example%2Fmcp");
    EXPECT_EQ(secrets.values, (std::map<std::string, std::string>{{clientIDKey, "stored"}}));
}

TEST_F(Refreshing, IsStoppedUntilTheRefreshTokenIsOnItsWay)
{
    for (const std::string& last : {path::metadata, path::resource, path::registration}) {
        std::stop_source stop;
        InProcessHttpSession stopping([&](HttpRequest request, std::stop_token token) {
            if (request.url.path().toStdString() == last) {
                stop.request_stop();
            }
            return service.session().send(std::move(request), std::move(token));
        });
        const OAuthClient other{QUrl{QStringLiteral("https://roost.example")}, stopping, secrets,
                                [this] { return now; }};
        const AuthResult<TokenSet> refreshed = await(other.refresh("R1", stop.get_token()));
        ASSERT_FALSE(refreshed.has_value());
        EXPECT_EQ(refreshed.error(), AuthFailure{Stopped{}});
    }
    EXPECT_THAT(service.requests(path::token), IsEmpty());
}

TEST_F(Refreshing, LooksForAStopOnceMoreBeforeItSendsTheToken)
{
    secrets.values[clientIDKey] = "stored";
    ASSERT_TRUE(endpoints().has_value());
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(await(client.refresh("R1", stop.get_token())).error(), AuthFailure{Stopped{}});
    EXPECT_THAT(service.requests(path::token), IsEmpty());
}

TEST_F(Refreshing, WaitsForTheAnswerOnceTheRefreshTokenIsOnItsWay)
{
    std::stop_source stop;
    InProcessHttpSession stopping([&](HttpRequest request, std::stop_token token) {
        if (request.url.path().toStdString() == path::token) {
            stop.request_stop();
        }
        return service.session().send(std::move(request), std::move(token));
    });
    const OAuthClient other{QUrl{QStringLiteral("https://roost.example")}, stopping, secrets,
                            [this] { return now; }};
    const AuthResult<TokenSet> refreshed = await(other.refresh("R1", stop.get_token()));
    ASSERT_TRUE(refreshed.has_value());
    EXPECT_EQ(refreshed->refreshToken, "R2");
}

TEST_F(Refreshing, RegistersWhenThereIsNoClientId)
{
    ASSERT_TRUE(refresh().has_value());
    EXPECT_THAT(service.paths(),
                ElementsAre(path::metadata, path::resource, path::registration, path::token));
}

TEST_F(Refreshing, ForgetsTheClientIdThatTheServerDoesNotKnow)
{
    secrets.values[clientIDKey] = "stored";
    for (const int status : {400, 401}) {
        service.answerOnly(path::token, status, R"({"error":"invalid_client"})");
        expectKind(refresh(), Kind::invalidClient);
        EXPECT_TRUE(secrets.values.empty());
        secrets.values[clientIDKey] = "stored";
    }
}

TEST_F(Refreshing, KeepsTheClientIdThroughEveryOtherFailure)
{
    secrets.values[clientIDKey] = "stored";
    for (const auto& [status, body] : std::vector<std::pair<int, std::string>>{
             {400, R"({"error":"invalid_grant"})"}, {401, ""}, {500, "<html>"}, {200, "{}"}, {302, ""}}) {
        service.answerOnly(path::token, status, body);
        EXPECT_FALSE(refresh().has_value());
        EXPECT_EQ(secrets.values[clientIDKey], "stored");
    }
}

TEST_F(Refreshing, TakesAnAnswerWithoutANewRefreshTokenForMalformed)
{
    service.answerOnly(path::token, 200, R"({"access_token":"A","token_type":"Bearer"})");
    expectKind(refresh(), Kind::malformedResponse);
}

TEST_F(Refreshing, SendsNothingWhileTheStoreCannotTellTheClientId)
{
    // With another client id the refresh token would be refused, and the profile signed out.
    for (const Why why : {Why::locked, Why::notAnswering, Why::noService}) {
        secrets.unavailable = SecretsUnavailable{why};
        EXPECT_EQ(refresh().error(), AuthFailure{SecretsUnavailable{why}});
    }
    EXPECT_THAT(service.requests(path::token), IsEmpty());
    EXPECT_THAT(service.requests(path::registration), IsEmpty());
}

namespace {

/// The same client over real connections: what is sent at most once, and what never leaves.
class OAuthClientOnLoopback : public testing::Test {
protected:
    AuthResult<TokenSet> exchangedWith(LoopbackServer& server)
    {
        const auto at = [&](const char* path) {
            return *WebURL::parse(server.url(QString::fromUtf8(path)).toString().toStdString());
        };
        const OAuthEndpoints endpoints{at("/"), at("/authorize"), at("/token"), at("/register"), "r", false};
        const OAuthClient client{server.url(), session, secrets, systemClock()};
        return await(client.exchange(
            "canary-code",
            {at("/authorize"), "S", "canary-verifier", "briskenroost://oauth/callback", endpoints, "c"}, {}));
    }

    NetworkHttpSession session;
    InMemorySecretStore secrets;
    LogCatcher log;
};

} // namespace

TEST_F(OAuthClientOnLoopback, SendsACodeOnceWhenTheAnswerIsLost)
{
    LoopbackServer server;
    server.answer({LoopbackServer::Close{}});
    const auto tokens = exchangedWith(server);
    ASSERT_FALSE(tokens.has_value());
    EXPECT_TRUE(isAuthError(tokens.error(), Kind::unreachable));
    EXPECT_THAT(server.requests(), SizeIs(1));
    EXPECT_FALSE(log.saw(u"canary"));
}

TEST_F(OAuthClientOnLoopback, FollowsNoRedirectWithACode)
{
    for (const int status : {301, 302, 303, 307, 308}) {
        LoopbackServer stranger;
        LoopbackServer server;
        server.answer({LoopbackServer::Send{
            httpAnswer(status, "", "Location: " + stranger.url().toEncoded() + "\r\n")}});
        EXPECT_EQ(exchangedWith(server).error(), AuthFailure{RoostAuthError::unexpectedResponse(status)});
        EXPECT_EQ(stranger.connections(), 0);
    }
}

TEST_F(OAuthClientOnLoopback, TakesNoMoreThan256KiBOfAnAnswer)
{
    LoopbackServer server;
    server.answer({LoopbackServer::Send{httpAnswer(200, QByteArray(256 * 1024 + 1, ' '))}});
    EXPECT_TRUE(isAuthError(exchangedWith(server).error(), Kind::malformedResponse));
}

TEST_F(OAuthClientOnLoopback, TakesAnAnswerThatBreaksOffForNone)
{
    const QByteArray whole = httpAnswer(200, QByteArray::fromStdString(tokensOfExample("A", "R")));
    for (qsizetype length = 0; length < whole.size(); length += 7) {
        LoopbackServer server;
        server.answer({LoopbackServer::Send{whole.first(length)}, LoopbackServer::Close{}});
        EXPECT_FALSE(exchangedWith(server).has_value()) << length;
    }
}

} // namespace roost::test
