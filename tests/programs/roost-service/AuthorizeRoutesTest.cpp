#include "tests/programs/roost-service/OAuthUnderTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QRegularExpression>

namespace roost::local {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using test::ask;
using test::Parameters;
using test::RawAnswer;
using testing::HasSubstr;
using testing::Not;

class AuthorizationEndpoint : public test::OAuthUnderTest {
protected:
    void askTheUser() { service_->setConsent({}); }

    static QByteArray ticketIn(const RawAnswer& page)
    {
        EXPECT_EQ(page.status(), 200);
        static const QRegularExpression field(u"name=\"ticket\" value=\"([^\"]+)\""_s);
        return field.match(QString::fromUtf8(page.body())).captured(1).toLatin1();
    }

    RawAnswer decide(const Parameters& form, const QByteArray& lines = {})
    {
        return post("/oauth/authorize", test::encoded(form), lines);
    }

    /// The decision of a user who has just been asked.
    RawAnswer decide(const QByteArray& decision, const QByteArray& profile)
    {
        return decide({{"ticket", ticketIn(authorize())}, {"decision", decision}, {"profile", profile}});
    }

    void expectRefusalPage(const RawAnswer& answer)
    {
        EXPECT_EQ(answer.status(), 400);
        EXPECT_FALSE(answer.header("Location"));
        EXPECT_THAT(answer.body().toStdString(), HasSubstr("This sign-in cannot go on"));
    }

    /// The error that goes back to the client, with its state and the issuer.
    std::string errorOf(const RawAnswer& answer)
    {
        const FormFields fields = returned(answer);
        EXPECT_EQ(fields.value("state"), "s t/a+te");
        EXPECT_EQ(fields.value("iss"), service_->base());
        EXPECT_FALSE(fields.value("code"));
        return fields.value("error").value_or(QByteArray()).toStdString();
    }
};

TEST_F(AuthorizationEndpoint, ReturnsACodeWithTheStateAsItCameAndTheIssuer)
{
    const RawAnswer answer = authorize();
    EXPECT_TRUE(answer.header("Location")->startsWith(QByteArray(redirect) + '?'));
    const FormFields fields = returned(answer);
    EXPECT_EQ(fields.value("state"), "s t/a+te");
    EXPECT_EQ(fields.value("iss"), service_->base());
    EXPECT_TRUE(fields.value("code"));
    EXPECT_EQ(answer.header("Cache-Control"), "no-store");
}

TEST_F(AuthorizationEndpoint, SendsNobodyAwayForAClientThatItDoesNotKnow)
{
    expectRefusalPage(authorize({{"client_id", "unknown"}}));
    expectRefusalPage(authorize({{"client_id", ""}}));
    expectRefusalPage(get("/oauth/authorize"));
    expectRefusalPage(get("/oauth/authorize?" + test::encoded(authorization()) + "&client_id=other"));
}

TEST_F(AuthorizationEndpoint, SendsNobodyToAnAddressThatWasNotRegistered)
{
    for (const char* uri : {"briskenroost://oauth/callback/", "briskenroost://oauth/callback?x=1",
                            "BriskenRoost://oauth/callback", "https://evil.example/", ""}) {
        expectRefusalPage(authorize({{"redirect_uri", uri}}));
    }
    expectRefusalPage(
        get("/oauth/authorize?" + test::encoded(authorization()) + "&redirect_uri=" + redirect));
    expectRefusalPage(authorize({{"redirect_uri", "https://evil.example/"}, {"response_type", "token"}}));
    expectRefusalPage(get("/oauth/authorize?" + test::encoded(authorization()) + "&x=%zz"));
}

TEST_F(AuthorizationEndpoint, TellsTheClientOfItsOtherFaults)
{
    EXPECT_EQ(errorOf(authorize({{"response_type", ""}})), "invalid_request");
    EXPECT_EQ(errorOf(authorize({{"response_type", "token"}})), "unsupported_response_type");
    EXPECT_EQ(errorOf(authorize({{"response_mode", "form_post"}})), "invalid_request");
    EXPECT_EQ(errorOf(authorize({{"scope", "metrics:read posts:write"}})), "invalid_scope");
    EXPECT_EQ(errorOf(authorize({{"resource", service_->base()}})), "invalid_target");
    EXPECT_EQ(errorOf(authorize({{"resource", resource() + '/'}})), "invalid_target");
    EXPECT_EQ(errorOf(get("/oauth/authorize?" + test::encoded(authorization()) + "&resource=urn:x")),
              "invalid_target");
    EXPECT_EQ(errorOf(get("/oauth/authorize?" + test::encoded(authorization()) + "&scope=posts:read")),
              "invalid_request");
}

TEST_F(AuthorizationEndpoint, InsistsOnAProofKeyWithSha256)
{
    EXPECT_EQ(errorOf(authorize({{"code_challenge", ""}})), "invalid_request");
    EXPECT_EQ(errorOf(authorize({{"code_challenge_method", ""}})), "invalid_request");
    EXPECT_EQ(errorOf(authorize({{"code_challenge_method", "plain"}})), "invalid_request");
    EXPECT_EQ(errorOf(authorize({{"code_challenge_method", "s256"}})), "invalid_request");
    EXPECT_EQ(errorOf(authorize({{"code_challenge", QByteArray(challenge) + '='}})), "invalid_request");
}

TEST_F(AuthorizationEndpoint, SendsNoStateBackWhereNoneCame)
{
    EXPECT_FALSE(returned(authorize({{"state", ""}})).value("state"));
    const FormFields twice = returned(get("/oauth/authorize?" + test::encoded(authorization()) + "&state=b"));
    EXPECT_EQ(twice.value("error"), "invalid_request");
    EXPECT_FALSE(twice.value("state"));
}

TEST_F(AuthorizationEndpoint, KeepsAClientWithinWhatItRegisteredFor)
{
    QJsonObject metadata = registration();
    metadata.insert(u"scope"_s, u"posts:read"_s);
    client_ = test::member(registerWith(metadata), "client_id");
    EXPECT_EQ(errorOf(authorize()), "invalid_scope");
    const RawAnswer tokens = exchange(code({{"scope", ""}}));
    EXPECT_EQ(test::member(tokens, "scope"), "posts:read");
}

TEST_F(AuthorizationEndpoint, AddsToAQueryThatTheRedirectUriHas)
{
    QJsonObject metadata = registration();
    metadata.insert(u"redirect_uris"_s, QJsonArray{u"http://127.0.0.1/back?keep=a%7Eb"_s});
    client_ = test::member(registerWith(metadata), "client_id");
    const RawAnswer answer = authorize({{"redirect_uri", "http://127.0.0.1:4242/back?keep=a%7Eb"}});
    EXPECT_TRUE(answer.header("Location")->startsWith("http://127.0.0.1:4242/back?keep=a%7Eb&code="));
}

TEST_F(AuthorizationEndpoint, AsksTheUserAboutClientProfileAndScopes)
{
    askTheUser();
    const std::string page = authorize().body().toStdString();
    EXPECT_THAT(page, HasSubstr("Test &lt;client&gt;"));
    EXPECT_THAT(page, Not(HasSubstr("<client>")));
    for (const LivingProfile& profile : service_->state().profiles) {
        EXPECT_THAT(page, HasSubstr("type=\"radio\" name=\"profile\" value=\"" + profile.id() + '"'));
        EXPECT_THAT(page, HasSubstr(profile.name()));
    }
    EXPECT_THAT(page, HasSubstr(">Allow</button>"));
    EXPECT_THAT(page, HasSubstr(">Deny</button>"));
    EXPECT_THAT(page, HasSubstr("views, followers"));
    EXPECT_THAT(page, Not(HasSubstr("scheduled")));
    EXPECT_THAT(page, HasSubstr(redirect));
    EXPECT_EQ(service_->state().authorization.grantCount(), 0);
}

TEST_F(AuthorizationEndpoint, KeepsItsPageOutOfFramesCachesAndScripts)
{
    askTheUser();
    const RawAnswer page = authorize();
    const std::string policy = page.header("Content-Security-Policy")->toStdString();
    EXPECT_THAT(policy, HasSubstr("default-src 'none'"));
    EXPECT_THAT(policy, HasSubstr("frame-ancestors 'none'"));
    EXPECT_THAT(policy, HasSubstr("form-action 'self' briskenroost:"));
    EXPECT_THAT(policy, Not(HasSubstr("unsafe")));
    EXPECT_EQ(page.header("X-Frame-Options"), "DENY");
    EXPECT_EQ(page.header("Cache-Control"), "no-store");
    EXPECT_EQ(page.header("Content-Type"), "text/html; charset=utf-8");
    EXPECT_THAT(page.body().toStdString(), Not(HasSubstr("<script")));
    EXPECT_TRUE(authorize({{"client_id", "x"}}).header("Content-Security-Policy"));
}

TEST_F(AuthorizationEndpoint, GivesTheProfileThatTheUserPicked)
{
    askTheUser();
    const FormFields fields = returned(decide("allow", "mira-okafor"));
    EXPECT_EQ(fields.value("state"), "s t/a+te");
    EXPECT_EQ(fields.value("iss"), service_->base());
    const RawAnswer tokens = exchange(fields.value("code").value_or(QByteArray()));
    const RawAnswer answer =
        get("/api/roost/v1/widget", "Authorization: Bearer " + test::member(tokens, "access_token") + "\r\n");
    EXPECT_THAT(answer.body().toStdString(), HasSubstr(R"("id":"mira-okafor")"));
}

TEST_F(AuthorizationEndpoint, SaysThatTheUserDenied)
{
    askTheUser();
    EXPECT_EQ(errorOf(decide("deny", "mira-okafor")), "access_denied");
    EXPECT_EQ(errorOf(decide("deny", {})), "access_denied");
}

TEST_F(AuthorizationEndpoint, TakesADecisionFromItsOwnPageAlone)
{
    askTheUser();
    const Parameters good{
        {"ticket", ticketIn(authorize())}, {"decision", "allow"}, {"profile", "mira-okafor"}};
    expectRefusalPage(decide(test::changed(good, {{"ticket", ""}})));
    expectRefusalPage(decide(test::changed(good, {{"ticket", "guess"}})));
    expectRefusalPage(decide(good, "Origin: https://evil.example\r\n"));
    expectRefusalPage(decide(good, "Origin: null\r\n"));
    expectRefusalPage(ask(service_->base(), "POST", "/oauth/authorize", "Content-Type: text/plain\r\n",
                          test::encoded(good)));
    expectRefusalPage(post("/oauth/authorize", test::encoded(good) + "&decision=deny"));
    EXPECT_EQ(decide(good, "Origin: " + service_->base() + "\r\n").status(), 303);
}

TEST_F(AuthorizationEndpoint, TakesADecisionOnce)
{
    askTheUser();
    const Parameters form{
        {"ticket", ticketIn(authorize())}, {"decision", "allow"}, {"profile", "mira-okafor"}};
    EXPECT_EQ(decide(form).status(), 303);
    expectRefusalPage(decide(form));
    expectRefusalPage(decide(test::changed(form, {{"decision", "deny"}})));
}

TEST_F(AuthorizationEndpoint, TakesNoDecisionAfterTenMinutes)
{
    askTheUser();
    const Parameters form{
        {"ticket", ticketIn(authorize())}, {"decision", "allow"}, {"profile", "mira-okafor"}};
    now_ += 10min;
    expectRefusalPage(decide(form));
}

TEST_F(AuthorizationEndpoint, TakesNothingElseForADecision)
{
    askTheUser();
    expectRefusalPage(decide("maybe", "mira-okafor"));
    expectRefusalPage(decide("allow", "nobody"));
    expectRefusalPage(decide("allow", {}));
    EXPECT_EQ(ask(service_->base(), "PUT", "/oauth/authorize", {}, "x").status(), 405);
}

TEST_F(AuthorizationEndpoint, DoesNotAllowForAClientThatWasForgottenMeanwhile)
{
    askTheUser();
    const Parameters form{
        {"ticket", ticketIn(authorize())}, {"decision", "allow"}, {"profile", "mira-okafor"}};
    service_->forgetClients();
    expectRefusalPage(decide(form));
}

TEST_F(AuthorizationEndpoint, AllowsTheNextProfileWhereNobodyIsAsked)
{
    signIn();
    signIn();
    for (std::size_t position = 0; position < 3; ++position) {
        EXPECT_EQ(service_->state().authorization.grantCount(profileId(position)), position < 2 ? 1 : 0);
    }
    signIn();
    signIn();
    EXPECT_EQ(service_->state().authorization.grantCount(profileId()), 2);
    control("/consent", R"({"auto":"allow","profile":"mira-okafor"})");
    signIn();
    EXPECT_EQ(service_->state().authorization.grantCount("mira-okafor"), 2);
}

TEST_F(AuthorizationEndpoint, CanDenyWithoutAsking)
{
    control("/consent", R"({"auto":"deny"})");
    EXPECT_EQ(errorOf(authorize()), "access_denied");
    control("/consent", R"({"auto":"off"})");
    EXPECT_EQ(authorize().status(), 200);
}

TEST_F(AuthorizationEndpoint, CanAnswerInWaysThatClientsMustRefuse)
{
    fault("iss-not-sent");
    EXPECT_FALSE(returned(authorize()).value("iss"));
    fault("none");
    fault("wrong-iss");
    EXPECT_EQ(returned(authorize()).value("iss"), "https://issuer.example");
    fault("none");
    fault("state-missing");
    EXPECT_FALSE(returned(authorize()).value("state"));
    fault("none");
    fault("state-altered");
    EXPECT_NE(returned(authorize()).value("state"), "s t/a+te");
    EXPECT_TRUE(returned(authorize()).value("state"));
}

} // namespace
} // namespace roost::local
