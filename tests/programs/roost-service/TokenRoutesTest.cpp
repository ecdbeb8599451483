#include "tests/programs/roost-service/OAuthUnderTest.h"

#include <gtest/gtest.h>

namespace roost::local {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using test::ask;
using test::member;
using test::Parameters;
using test::RawAnswer;

class TokenEndpoint : public test::OAuthUnderTest {
protected:
    static std::string errorOf(const RawAnswer& answer, int status = 400)
    {
        EXPECT_EQ(answer.status(), status) << answer.bytes.toStdString();
        EXPECT_EQ(answer.header("Cache-Control"), "no-store");
        return member(answer, "error").toStdString();
    }

    int reuses() { return state().value(u"refreshTokenReuses"_s).toInt(); }
};

TEST_F(TokenEndpoint, GivesTokensForACode)
{
    const RawAnswer answer = signIn();
    ASSERT_EQ(answer.status(), 200);
    EXPECT_EQ(answer.header("Content-Type"), "application/json");
    EXPECT_EQ(answer.header("Cache-Control"), "no-store");
    EXPECT_EQ(answer.header("Pragma"), "no-cache");
    EXPECT_EQ(member(answer, "token_type"), "Bearer");
    EXPECT_EQ(member(answer, "scope"), "metrics:read");
    EXPECT_EQ(test::jsonOf(answer).value(u"expires_in"_s), 3600);
    EXPECT_FALSE(member(answer, "refresh_token").isEmpty());
    EXPECT_EQ(widgetStatus(member(answer, "access_token")), 200);
}

TEST_F(TokenEndpoint, TakesACodeFromWhomItWasGivenToAlone)
{
    const QByteArray given = code();
    EXPECT_EQ(errorOf(exchange(given, {{"client_id", registerClient()}})), "invalid_grant");
    EXPECT_EQ(errorOf(exchange(given, {{"redirect_uri", "briskenroost://oauth/callback/"}})),
              "invalid_grant");
    EXPECT_EQ(errorOf(exchange(given, {{"code_verifier", QByteArray(43, 'a')}})), "invalid_grant");
    EXPECT_EQ(errorOf(exchange(given, {{"code_verifier", challenge}})), "invalid_grant");
    EXPECT_EQ(errorOf(exchange(given, {{"resource", service_->base()}})), "invalid_target");
    EXPECT_EQ(errorOf(exchange(given, {{"code_verifier", ""}})), "invalid_request");
    EXPECT_EQ(errorOf(exchange(given, {{"redirect_uri", ""}})), "invalid_request");
    EXPECT_EQ(errorOf(exchange(given, {{"code", ""}})), "invalid_request");
    EXPECT_EQ(errorOf(exchange("guess")), "invalid_grant");
    EXPECT_EQ(exchange(given).status(), 200);
}

TEST_F(TokenEndpoint, TakesACodeForAMinute)
{
    const QByteArray early = code();
    const QByteArray late = code();
    now_ += 60s - 1ms;
    EXPECT_EQ(exchange(early).status(), 200);
    now_ += 1ms;
    EXPECT_EQ(errorOf(exchange(late)), "invalid_grant");
}

TEST_F(TokenEndpoint, TakesBackWhatACodeGaveWhenTheCodeComesAgain)
{
    const QByteArray given = code();
    const RawAnswer tokens = exchange(given);
    EXPECT_EQ(errorOf(exchange(given)), "invalid_grant");
    EXPECT_EQ(widgetStatus(member(tokens, "access_token")), 401);
    EXPECT_EQ(errorOf(refresh(member(tokens, "refresh_token"))), "invalid_grant");
    EXPECT_EQ(reuses(), 0);
}

TEST_F(TokenEndpoint, PutsANewRefreshTokenInThePlaceOfTheOldOne)
{
    const RawAnswer first = signIn();
    const RawAnswer second = refresh(member(first, "refresh_token"));
    ASSERT_EQ(second.status(), 200);
    EXPECT_NE(member(second, "refresh_token"), member(first, "refresh_token"));
    EXPECT_NE(member(second, "access_token"), member(first, "access_token"));
    EXPECT_EQ(widgetStatus(member(second, "access_token")), 200);
    EXPECT_EQ(refresh(member(second, "refresh_token")).status(), 200);
    EXPECT_EQ(reuses(), 0);
}

TEST_F(TokenEndpoint, RevokesTheWholeGrantWhenAnOldRefreshTokenComes)
{
    const RawAnswer first = signIn();
    const RawAnswer second = refresh(member(first, "refresh_token"));
    const RawAnswer other = signIn();
    EXPECT_EQ(errorOf(refresh(member(first, "refresh_token"))), "invalid_grant");
    EXPECT_EQ(reuses(), 1);
    EXPECT_EQ(widgetStatus(member(first, "access_token")), 401);
    EXPECT_EQ(widgetStatus(member(second, "access_token")), 401);
    EXPECT_EQ(errorOf(refresh(member(second, "refresh_token"))), "invalid_grant");
    EXPECT_EQ(reuses(), 1);
    EXPECT_EQ(refresh(member(other, "refresh_token")).status(), 200);
}

TEST_F(TokenEndpoint, TakesARefreshTokenFromItsClientAlone)
{
    const RawAnswer tokens = signIn();
    const QByteArray token = member(tokens, "refresh_token");
    EXPECT_EQ(errorOf(refresh(token, {{"client_id", registerClient()}})), "invalid_grant");
    EXPECT_EQ(errorOf(refresh(token, {{"resource", service_->base()}})), "invalid_target");
    EXPECT_EQ(errorOf(refresh(token, {{"scope", "metrics:read posts:read"}})), "invalid_scope");
    EXPECT_EQ(errorOf(refresh(token, {{"scope", "nonsense"}})), "invalid_scope");
    EXPECT_EQ(errorOf(refresh(token, {{"refresh_token", ""}})), "invalid_request");
    EXPECT_EQ(refresh(token, {{"resource", ""}}).status(), 200);
}

TEST_F(TokenEndpoint, KnowsAnAccessTokenFromARefreshToken)
{
    const RawAnswer tokens = signIn();
    EXPECT_EQ(errorOf(refresh(member(tokens, "access_token"))), "invalid_grant");
    EXPECT_EQ(widgetStatus(member(tokens, "refresh_token")), 401);
}

TEST_F(TokenEndpoint, CanNarrowWhatAnAccessTokenIsGoodFor)
{
    const RawAnswer wide = signIn({{"scope", "metrics:read posts:read"}});
    const RawAnswer narrow = refresh(member(wide, "refresh_token"), {{"scope", "posts:read"}});
    EXPECT_EQ(member(narrow, "scope"), "posts:read");
    EXPECT_EQ(widgetStatus(member(narrow, "access_token")), 403);
    const RawAnswer again = refresh(member(narrow, "refresh_token"));
    EXPECT_EQ(member(again, "scope"), "metrics:read posts:read");
    EXPECT_EQ(widgetStatus(member(again, "access_token")), 200);
}

TEST_F(TokenEndpoint, TellsAClientThatItKnowsFromOneThatItDoesNot)
{
    EXPECT_EQ(errorOf(refresh("probe")), "invalid_grant");
    EXPECT_EQ(errorOf(refresh("probe", {{"client_id", "unknown"}}), 401), "invalid_client");
    service_->forgetClients();
    EXPECT_EQ(errorOf(refresh("probe"), 401), "invalid_client");
}

TEST_F(TokenEndpoint, WantsNoSecretFromPublicClients)
{
    const QByteArray form = test::encoded(refreshOf("probe"));
    const RawAnswer answer = post("/oauth/token", form, "Authorization: Basic eDp5\r\n");
    EXPECT_EQ(errorOf(answer, 401), "invalid_client");
    EXPECT_TRUE(answer.header("WWW-Authenticate")->startsWith("Basic "));
    EXPECT_EQ(errorOf(refresh("probe", {{"client_secret", "x"}}), 401), "invalid_client");
}

TEST_F(TokenEndpoint, TakesWellFormedRequestsAlone)
{
    const QByteArray form = test::encoded(refreshOf("probe"));
    EXPECT_EQ(errorOf(post("/oauth/token", form + "&client_id=" + client_)), "invalid_request");
    EXPECT_EQ(errorOf(post("/oauth/token", form + "&x=1&x=1")), "invalid_request");
    EXPECT_EQ(errorOf(post("/oauth/token", form + "&x=%zz")), "invalid_request");
    EXPECT_EQ(errorOf(post("/oauth/token?client_id=" + client_, form)), "invalid_request");
    EXPECT_EQ(errorOf(ask(service_->base(), "POST", "/oauth/token", "Content-Type: text/plain\r\n", form)),
              "invalid_request");
    EXPECT_EQ(errorOf(ask(service_->base(), "POST", "/oauth/token", {}, form)), "invalid_request");
    EXPECT_EQ(errorOf(refresh("probe", {{"client_id", ""}})), "invalid_request");
    EXPECT_EQ(errorOf(refresh("probe", {{"grant_type", ""}})), "invalid_request");
    EXPECT_EQ(errorOf(refresh("probe", {{"grant_type", "password"}})), "unsupported_grant_type");
    const RawAnswer wrongMethod = get("/oauth/token?" + form);
    EXPECT_EQ(wrongMethod.status(), 405);
    EXPECT_EQ(wrongMethod.header("Allow"), "POST");
}

TEST_F(TokenEndpoint, ReadsAFormInAnyEncoding)
{
    const QByteArray token = member(signIn(), "refresh_token");
    QByteArray spelled;
    for (const char c : token) {
        spelled += '%' + QByteArray(1, c).toHex();
    }
    const QByteArray form = "grant%5Ftype=refresh_token&client_id=" + client_ +
                            "&scope=metrics%3Aread&refresh_token=" + spelled +
                            "&resource=" + resource().toPercentEncoding() + "&unknown=a+b%2B";
    EXPECT_EQ(post("/oauth/token", form).status(), 200);
}

TEST_F(TokenEndpoint, LetsAccessTokensEndWhenTheirTimeIsOver)
{
    start(
        {.autoConsent = true, .accessTokenLifetime = 10s, .refreshTokenLifetime = 100s, .codeLifetime = 1s});
    client_ = registerClient();
    const RawAnswer tokens = signIn();
    EXPECT_EQ(test::jsonOf(tokens).value(u"expires_in"_s), 10);
    now_ += 10s - 1ms;
    EXPECT_EQ(widgetStatus(member(tokens, "access_token")), 200);
    now_ += 1ms;
    EXPECT_EQ(widgetStatus(member(tokens, "access_token")), 401);
    const RawAnswer refreshed = refresh(member(tokens, "refresh_token"));
    EXPECT_EQ(refreshed.status(), 200);
    now_ += 100s;
    EXPECT_EQ(errorOf(refresh(member(refreshed, "refresh_token"))), "invalid_grant");
    const QByteArray given = code();
    now_ += 1s;
    EXPECT_EQ(errorOf(exchange(given)), "invalid_grant");
}

TEST_F(TokenEndpoint, CountsARequestForTheProfileWhoseTokenCame)
{
    const RawAnswer tokens = signIn();
    refresh(member(tokens, "refresh_token"));
    refresh("probe");
    EXPECT_EQ(service_->state().counters.requests(Endpoint::token), 3);
    EXPECT_EQ(service_->state().counters.requests(Endpoint::token, profileId()), 2);
    EXPECT_EQ(service_->state().counters.requests(Endpoint::authorize), 1);
}

TEST_F(TokenEndpoint, TellsHowManyRequestsOfOneGrantWereThereAtOnce)
{
    const QByteArray token = member(signIn(), "refresh_token");
    refresh("probe");
    EXPECT_EQ(state().value(u"mostTokenRequestsAtOnce"_s), 1);
    control("/scenario", R"({"endpoint":"token","kind":"hang"})");
    const QByteArray form = test::encoded(refreshOf(token));
    const QByteArray request = test::requestText("POST", "/oauth/token",
                                                 "Content-Type: application/x-www-form-urlencoded\r\n", form);
    test::RawClient one(test::portOf(service_->base()));
    test::RawClient two(test::portOf(service_->base()));
    one.send(request);
    two.send(request);
    EXPECT_TRUE(
        roost::test::runUntil([this] { return service_->state().counters.mostTokenRequestsAtOnce() == 2; }));
}

TEST_F(TokenEndpoint, CanLoseTheAnswerToARequestThatItCarriedOut)
{
    const QByteArray token = member(signIn(), "refresh_token");
    control("/scenario",
            R"({"profile":"harbour-light","endpoint":"token","kind":"drop","processed":true,"times":1})");
    EXPECT_EQ(refresh(token).bytes, "");
    EXPECT_EQ(errorOf(refresh(token)), "invalid_grant");
    EXPECT_EQ(reuses(), 1);
}

TEST_F(TokenEndpoint, CanLoseARequestBeforeItIsCarriedOut)
{
    const QByteArray token = member(signIn(), "refresh_token");
    control("/scenario", R"({"endpoint":"token","kind":"drop","times":1})");
    EXPECT_EQ(refresh(token).bytes, "");
    EXPECT_EQ(refresh(token).status(), 200);
}

TEST_F(TokenEndpoint, CanRefuseWithoutALook)
{
    const QByteArray token = member(signIn(), "refresh_token");
    for (const auto& [kind, error, status] : {std::tuple{"invalid-client-400", "invalid_client", 400},
                                              std::tuple{"invalid-client-401", "invalid_client", 401},
                                              std::tuple{"invalid-grant", "invalid_grant", 400}}) {
        control("/fault", QByteArray(R"({"kind":")") + kind + R"(","times":1})");
        EXPECT_EQ(errorOf(refresh(token), status), error);
    }
    EXPECT_EQ(refresh(token).status(), 200);
}

TEST_F(TokenEndpoint, CanGiveAnswersThatClientsMustRefuse)
{
    fault("token-type-not-bearer");
    fault("no-expires-in");
    const RawAnswer odd = signIn();
    EXPECT_EQ(odd.status(), 200);
    EXPECT_EQ(member(odd, "token_type"), "mac");
    EXPECT_FALSE(test::jsonOf(odd).contains(u"expires_in"_s));
    fault("none");
    control("/fault", R"({"kind":"no-new-refresh-token","times":1})");
    const RawAnswer kept = refresh(member(odd, "refresh_token"));
    EXPECT_EQ(kept.status(), 200);
    EXPECT_FALSE(test::jsonOf(kept).contains(u"refresh_token"_s));
    EXPECT_TRUE(test::jsonOf(refresh(member(odd, "refresh_token"))).contains(u"refresh_token"_s));
}

} // namespace
} // namespace roost::local
