#include "service/SignInFlow.h"

#include "model/RoostJSON.h"
#include "model/RoostSnapshotFields.h"
#include "service/InMemorySecretStore.h"
#include "tests/support/Await.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/OAuthFixture.h"
#include "tests/support/ScriptedService.h"

#include <gmock/gmock.h>

namespace roost::test {

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Kind = RoostAuthError::Kind;
using Callback = std::expected<std::string, RoostAuthError>;

std::string snapshotJSON()
{
    RoostSnapshot snapshot;
    snapshot.profile = {.id = "p1", .name = "Brisken", .avatarUrl = std::nullopt};
    return RoostJSON::encoder().encode(snapshot);
}

/// A browser that comes back with what a function makes of the address.
class ScriptedBrowser final : public WebAuthenticating {
public:
    QCoro::Task<Callback> authenticate(WebURL url, QString callbackScheme, std::stop_token) override
    {
        opened.push_back(url.text());
        schemes.push_back(callbackScheme.toStdString());
        Callback back = comesBack;
        co_return back;
    }

    Callback comesBack = "briskenroost://oauth/callback?code=C&state=AAAAAAAAAAAAAAAAAAAAAA";
    std::vector<std::string> opened;
    std::vector<std::string> schemes;
};

class SignInFlowTest : public testing::Test {
protected:
    SignInFlowTest()
    {
        service.answer(path::metadata, 200, metadataOfExample());
        service.answer(path::registration, 201, R"({"client_id":"c"})");
        service.answer(path::token, 200, tokensOfExample("A", "R"));
    }

    AuthResult<SignInFlow::Result> run(std::stop_token stop = {})
    {
        const QUrl base{QStringLiteral("https://roost.example")};
        const SignInFlow flow{
            OAuthClient{base, service.session(), secrets, [this] { return now; }},
            WidgetAPI{base, service.session()}, browser,
            [](std::size_t count) { return QByteArray(static_cast<qsizetype>(count), '\0'); },
            [this](std::chrono::duration<double> length, std::stop_token) { return pause(length); }};
        return await(flow.run(std::move(stop)));
    }

    QCoro::Task<void> pause(std::chrono::duration<double> length)
    {
        pauses.push_back(length.count());
        if (stopAtPause) {
            stopAtPause->request_stop();
        }
        co_return;
    }

    void expectRefused(Kind kind)
    {
        const auto result = run();
        ASSERT_FALSE(result.has_value());
        EXPECT_TRUE(isAuthError(result.error(), kind)) << describe(result.error());
    }

    ScriptedService service;
    InMemorySecretStore secrets;
    ScriptedBrowser browser;
    Date now = Date(std::chrono::milliseconds(1'718'000'000'123));
    std::vector<double> pauses;
    std::stop_source* stopAtPause = nullptr;
    LogCatcher log;
};

} // namespace

TEST_F(SignInFlowTest, GivesTheTokensAndTheFirstSnapshot)
{
    service.answer(path::widget, 200, snapshotJSON());
    const auto result = run();
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->tokens, (TokenSet{"A", "R", now + 300s, "metrics:read"}));
    EXPECT_EQ(result->snapshot.profile.id, "p1");
    EXPECT_THAT(pauses, IsEmpty());
    EXPECT_THAT(browser.opened, ElementsAre(testing::StartsWith("https://roost.example/oauth/authorize?")));
    EXPECT_THAT(browser.schemes, ElementsAre("briskenroost"));
    EXPECT_EQ(service.requests(path::widget).front().headers.front().second, "Bearer A");
}

TEST_F(SignInFlowTest, StoresNothingButTheClientId)
{
    service.answer(path::widget, 200, snapshotJSON());
    ASSERT_TRUE(run().has_value());
    EXPECT_THAT(secrets.values, ElementsAre(std::pair{"client-id|https://roost.example", "c"}));
}

TEST_F(SignInFlowTest, AsksThreeTimesForTheFirstSnapshotWithTwoPauses)
{
    const HttpResult unreachable = std::unexpected(HttpFailure{HttpFailure::Kind::transport, -1004});
    service.answer(path::widget, unreachable);
    service.answer(path::widget, unreachable);
    service.answer(path::widget, 200, snapshotJSON());
    EXPECT_TRUE(run().has_value());
    EXPECT_THAT(pauses, ElementsAre(2.0, 2.0));
}

TEST_F(SignInFlowTest, GivesUpAsUnreachableAfterThreeAttempts)
{
    for (const auto& [status, body] :
         std::vector<std::pair<int, std::string>>{{200, "<html>"}, {503, ""}, {429, ""}, {404, ""}}) {
        service.answerOnly(path::widget, status, body);
        pauses.clear();
        const auto before = service.requests(path::widget).size();
        expectRefused(Kind::unreachable);
        EXPECT_EQ(service.requests(path::widget).size(), before + 3);
        EXPECT_THAT(pauses, ElementsAre(2.0, 2.0));
    }
}

TEST_F(SignInFlowTest, PausesTwoSecondsWhateverTheServiceAsksFor)
{
    service.answer(path::widget, HttpResponse{503, {{"Retry-After", "600"}}, {}});
    service.answer(path::widget, 200, snapshotJSON());
    EXPECT_TRUE(run().has_value());
    EXPECT_THAT(pauses, ElementsAre(2.0));
}

TEST_F(SignInFlowTest, EndsAtOnceWhenTheNewTokensAreRefused)
{
    for (const int status : {401, 403}) {
        service.answerOnly(path::widget, status, "");
        const auto before = service.requests(path::widget).size();
        expectRefused(Kind::invalidGrant);
        EXPECT_EQ(service.requests(path::widget).size(), before + 1);
    }
    EXPECT_THAT(pauses, IsEmpty());
}

TEST_F(SignInFlowTest, EndsAtOnceWhenALaterAttemptIsRefused)
{
    service.answer(path::widget, 503, "");
    service.answer(path::widget, 403, "");
    expectRefused(Kind::invalidGrant);
    EXPECT_THAT(pauses, ElementsAre(2.0));
}

TEST_F(SignInFlowTest, EndsAsCancelledWhenTheBrowserIsClosedOrTheUserDenies)
{
    browser.comesBack = std::unexpected(RoostAuthError{Kind::cancelled, 0, {}});
    expectRefused(Kind::cancelled);
    browser.comesBack = "briskenroost://oauth/callback?error=access_denied&state=AAAAAAAAAAAAAAAAAAAAAA";
    expectRefused(Kind::cancelled);
    EXPECT_THAT(service.requests(path::token), SizeIs(1)); // The probe of the second attempt.
}

TEST_F(SignInFlowTest, ExchangesNoCodeFromACallbackOfAnotherRequest)
{
    browser.comesBack = "briskenroost://oauth/callback?code=C&state=X";
    expectRefused(Kind::stateMismatch);
    EXPECT_THAT(service.requests(path::token), IsEmpty());
}

TEST_F(SignInFlowTest, OpensNoBrowserWhenDiscoveryFails)
{
    service.answerOnly(path::metadata, 503, "");
    expectRefused(Kind::unexpectedResponse);
    EXPECT_THAT(browser.opened, IsEmpty());
}

TEST_F(SignInFlowTest, AsksForNoSnapshotWhenTheCodeIsRefused)
{
    service.answerOnly(path::token, 400, R"({"error":"invalid_grant"})");
    expectRefused(Kind::invalidGrant);
    EXPECT_THAT(service.requests(path::widget), IsEmpty());
}

TEST_F(SignInFlowTest, EndsWhenItIsStoppedDuringAPause)
{
    std::stop_source source;
    stopAtPause = &source;
    service.answer(path::widget, 503, "");
    const auto result = run(source.get_token());
    ASSERT_FALSE(result.has_value());
    EXPECT_EQ(result.error(), AuthFailure{Stopped{}});
    EXPECT_THAT(pauses, SizeIs(1));
}

TEST_F(SignInFlowTest, LogsNothingOfTheCodeOrTheTokens)
{
    browser.comesBack = "briskenroost://oauth/callback?code=canary&state=AAAAAAAAAAAAAAAAAAAAAA";
    service.answerOnly(path::token, 200, tokensOfExample("canary", "canary"));
    service.answer(path::widget, std::unexpected(HttpFailure{HttpFailure::Kind::transport, -1004}));
    expectRefused(Kind::unreachable);
    EXPECT_FALSE(log.saw(u"canary"));
}

} // namespace roost::test
