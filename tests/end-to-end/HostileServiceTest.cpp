#include "platform/FileRefreshLock.h"
#include "programs/roost-service/LocalService.h"
#include "service/AccountSync.h"
#include "service/InMemorySecretStore.h"
#include "service/NetworkHttpSession.h"
#include "service/SignInFlow.h"
#include "tests/support/Await.h"
#include "tests/support/ConsentingBrowser.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>

#include <QJsonDocument>
#include <QJsonObject>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using local::Endpoint;
using local::OAuthFault;
using local::Scenario;

using Kind = RoostAuthError::Kind;
using ReasonKind = SyncReason::Kind;

/// A whole client, from the browser's part to the refresh lock, on a service that can be told to misbehave.
class HostileService : public testing::Test {
protected:
    HostileService() { EXPECT_TRUE(isStarted); }

    QUrl base() const { return QUrl{QString::fromLatin1(service.base())}; }

    AuthResult<SignInFlow::Result> signedIn()
    {
        ConsentingBrowser browser{network};
        const auto noPause = [](std::chrono::duration<double>, std::stop_token) -> QCoro::Task<void> {
            co_return;
        };
        const SignInFlow flow{freshClient(), WidgetAPI{base(), network}, browser, PKCE::systemRandom,
                              noPause};
        return await(flow.run({}));
    }

    /// A session of a profile that has just signed in, as after a restart: with a refresh token alone.
    std::shared_ptr<AccountSession> session()
    {
        const auto result = signedIn();
        EXPECT_TRUE(result.has_value());
        profile = result->snapshot.profile.id;
        secrets.values["refresh-token|" + profile] = result->tokens.refreshToken;
        service.state().counters.clear();
        return afterRestart();
    }

    /// Another session of the same profile.
    std::shared_ptr<AccountSession> afterRestart()
    {
        return std::make_shared<AccountSession>(profile, oauth, secrets, lock, clock());
    }

    SyncOutcome::Any synced(const std::shared_ptr<AccountSession>& session)
    {
        return await(AccountSync{WidgetAPI{base(), network}}.fetch(session, {}));
    }

    /// Discovers anew each time.
    OAuthClient freshClient() { return {base(), network, secrets, clock()}; }

    Clock clock()
    {
        return [this] { return systemClock()() + offset; };
    }

    void misbehave(Endpoint endpoint, Scenario scenario)
    {
        service.state().scenarios.set(local::ScenarioBook::everyone, endpoint, std::move(scenario));
    }

    void behave()
    {
        service.state().scenarios.clear();
        service.state().faults.clear();
    }

    /// Each fault ends a sign-in as that error.
    void expectSignInsRefused(const std::vector<std::pair<OAuthFault, Kind>>& cases)
    {
        for (const auto& [fault, kind] : cases) {
            service.state().faults.set(fault);
            const auto result = signedIn();
            ASSERT_FALSE(result.has_value());
            EXPECT_TRUE(isAuthError(result.error(), kind)) << describe(result.error());
            behave();
        }
    }

    int requests(Endpoint endpoint) { return service.state().counters.requests(endpoint); }

    local::LocalService service{{.autoConsent = true}, systemClock(), local::systemRandomBytes()};
    const bool isStarted = service.start().has_value();
    std::chrono::milliseconds offset{0};
    NetworkHttpSession network;
    InMemorySecretStore secrets;
    ScratchFolder folder;
    FileRefreshLock lock{folder.path()};
    OAuthClient oauth{base(), network, secrets, clock()};
    std::string profile;
};

bool isUpdated(const SyncOutcome::Any& outcome)
{
    return std::holds_alternative<SyncOutcome::Updated>(outcome);
}

bool isSignedOut(const SyncOutcome::Any& outcome)
{
    return std::holds_alternative<SyncOutcome::SignedOut>(outcome);
}

std::optional<ReasonKind> reasonOf(const SyncOutcome::Any& outcome)
{
    const auto* failed = std::get_if<SyncOutcome::Failed>(&outcome);
    return failed == nullptr ? std::nullopt : std::optional{failed->reason.kind};
}

Scenario scenario(Scenario::Kind kind) { return {.kind = kind}; }

} // namespace

TEST_F(HostileService, RedirectsAreNotFollowedWithATokenOrACode)
{
    session();
    LoopbackServer stranger;
    for (const int status : {301, 302, 303, 307, 308}) {
        Scenario redirect = scenario(Scenario::Kind::redirect);
        redirect.status = status;
        redirect.location = stranger.url().toEncoded();
        misbehave(Endpoint::token, redirect);
        EXPECT_EQ(reasonOf(synced(afterRestart())), ReasonKind::unreachable);
        EXPECT_FALSE(signedIn().has_value());
        behave();
        misbehave(Endpoint::widget, redirect);
        EXPECT_EQ(reasonOf(synced(afterRestart())), ReasonKind::malformed);
        behave();
    }
    EXPECT_TRUE(isUpdated(synced(afterRestart())));
    EXPECT_EQ(stranger.connections(), 0);
}

TEST_F(HostileService, RequestsAreNotSentAgainWhenTheirAnswersAreLost)
{
    const auto account = session();
    for (const auto kind : {Scenario::Kind::drop, Scenario::Kind::reset}) {
        for (const Endpoint endpoint : {Endpoint::metadata, Endpoint::token, Endpoint::widget}) {
            misbehave(endpoint, scenario(kind));
            const auto before = requests(endpoint);
            // A client of its own, since the session's may know the endpoints by now.
            const OAuthClient client = freshClient();
            const auto fresh = std::make_shared<AccountSession>(profile, client, secrets, lock, clock());
            EXPECT_EQ(reasonOf(synced(fresh)), ReasonKind::unreachable);
            EXPECT_EQ(requests(endpoint), before + 1);
            behave();
        }
    }
    EXPECT_TRUE(isUpdated(synced(account)));
    EXPECT_EQ(service.state().counters.refreshTokenReuses(), 0);
}

TEST_F(HostileService, OneRefreshTokenIsNotSentTwiceByCallersAtOnce)
{
    const auto account = session();
    Scenario slow = scenario(Scenario::Kind::delay);
    slow.delay = 50ms;
    misbehave(Endpoint::token, slow);
    const AccountSync sync{WidgetAPI{base(), network}};
    std::vector<Pending<SyncOutcome::Any>> pending;
    for (int i = 0; i < 5; ++i) {
        pending.emplace_back(sync.fetch(account, {}));
    }
    for (auto& one : pending) {
        EXPECT_TRUE(isUpdated(one.get()));
    }
    EXPECT_EQ(requests(Endpoint::token), 1);
    EXPECT_EQ(service.state().counters.refreshTokenReuses(), 0);
}

TEST_F(HostileService, TheNewTokenIsStoredBeforeTheOtherIsUsed)
{
    const auto account = session();
    const std::string before = secrets.values["refresh-token|" + profile];
    misbehave(Endpoint::widget, scenario(Scenario::Kind::drop));
    EXPECT_EQ(reasonOf(synced(account)), ReasonKind::unreachable);
    EXPECT_NE(secrets.values["refresh-token|" + profile], before);
}

TEST_F(HostileService, AnAmbiguousFailureKeepsTheSession)
{
    const auto account = session();
    Scenario lost = scenario(Scenario::Kind::drop);
    lost.processed = false;
    misbehave(Endpoint::token, lost);
    EXPECT_EQ(reasonOf(synced(account)), ReasonKind::unreachable);
    EXPECT_EQ(account->state(), AccountSession::State::active);
    EXPECT_TRUE(secrets.values.contains("refresh-token|" + profile));
    behave();
    EXPECT_TRUE(isUpdated(synced(account)));
}

TEST_F(HostileService, BodiesAreBoundedAfterDecompression)
{
    session();
    for (const auto kind : {Scenario::Kind::huge, Scenario::Kind::gzipBomb}) {
        for (const Endpoint endpoint : {Endpoint::token, Endpoint::widget}) {
            Scenario large = scenario(kind);
            large.bytes = 64 * 1024 * 1024;
            misbehave(endpoint, large);
            EXPECT_EQ(reasonOf(synced(afterRestart())), ReasonKind::malformed) << static_cast<int>(kind);
            behave();
        }
    }
    EXPECT_TRUE(isUpdated(synced(afterRestart())));
}

TEST_F(HostileService, CookiesAreNeitherKeptNorSent)
{
    Scenario cookies = scenario(Scenario::Kind::headers);
    cookies.headers = {{"Set-Cookie", "session=1; Path=/"}};
    for (const Endpoint endpoint : {Endpoint::metadata, Endpoint::token, Endpoint::widget}) {
        misbehave(endpoint, cookies);
    }
    const auto account = session();
    EXPECT_TRUE(isUpdated(synced(account)));
    EXPECT_TRUE(isUpdated(synced(account)));
    EXPECT_FALSE(QJsonDocument(service.state().counters.toJson()).toJson().toLower().contains("cookie"));
}

TEST_F(HostileService, StatusAndBodyAreJudgedTogether)
{
    const auto account = session();
    Scenario half = scenario(Scenario::Kind::truncated);
    half.bytes = 20;
    misbehave(Endpoint::token, half);
    EXPECT_EQ(reasonOf(synced(account)), ReasonKind::unreachable);
    behave();
    const auto other = session();
    misbehave(Endpoint::token, scenario(Scenario::Kind::malformed));
    EXPECT_EQ(reasonOf(synced(other)), ReasonKind::malformed);
    behave();
    EXPECT_TRUE(isUpdated(synced(other)));
    service.revokeAll();
    EXPECT_TRUE(isSignedOut(synced(afterRestart())));
    EXPECT_FALSE(secrets.values.contains("refresh-token|" + profile));
}

TEST_F(HostileService, AQueryOfTheEndpointIsKept)
{
    service.state().faults.set(OAuthFault::authorizationEndpointQuery);
    EXPECT_TRUE(signedIn().has_value());
}

TEST_F(HostileService, AClockThatJumpsADaySignsNobodyOut)
{
    const auto account = session();
    EXPECT_TRUE(isUpdated(synced(account)));
    for (const auto jump : {24h, -48h, 24h}) {
        offset += jump;
        EXPECT_TRUE(isUpdated(synced(account)));
    }
    EXPECT_EQ(service.state().counters.refreshTokenReuses(), 0);
}

TEST_F(HostileService, NothingSecretIsLogged)
{
    LogCatcher log;
    const auto account = session();
    const std::string first = secrets.values["refresh-token|" + profile];
    for (const auto kind : {Scenario::Kind::drop, Scenario::Kind::notHttp, Scenario::Kind::huge}) {
        misbehave(Endpoint::token, scenario(kind));
        synced(account);
    }
    behave();
    synced(account);
    misbehave(Endpoint::widget, scenario(Scenario::Kind::reset));
    synced(account);
    EXPECT_FALSE(log.lines().isEmpty());
    for (const std::string& secret :
         {first, secrets.values["refresh-token|" + profile], std::string("Bearer")}) {
        EXPECT_FALSE(log.saw(QString::fromStdString(secret)));
    }
}

TEST_F(HostileService, AWrongMetadataDocumentIsRefusedForWhatIsWrongWithIt)
{
    expectSignInsRefused({
        {OAuthFault::noS256, Kind::unsupportedServer},
        {OAuthFault::plainOnly, Kind::unsupportedServer},
        {OAuthFault::noChallengeMethods, Kind::unsupportedServer},
        {OAuthFault::foreignIssuer, Kind::issuerMismatch},
        {OAuthFault::insecureIssuer, Kind::insecureEndpoint},
        {OAuthFault::insecureAuthorizationEndpoint, Kind::insecureEndpoint},
        {OAuthFault::insecureTokenEndpoint, Kind::insecureEndpoint},
        {OAuthFault::insecureRegistrationEndpoint, Kind::insecureEndpoint},
        {OAuthFault::noRegistrationEndpoint, Kind::malformedResponse},
    });
    EXPECT_TRUE(signedIn().has_value());
}

TEST_F(HostileService, AWrongAuthorizationResponseIsRefused)
{
    expectSignInsRefused({
        {OAuthFault::issNotSent, Kind::issuerMismatch},
        {OAuthFault::wrongIss, Kind::issuerMismatch},
        {OAuthFault::stateAltered, Kind::stateMismatch},
        {OAuthFault::stateMissing, Kind::stateMismatch},
    });
    EXPECT_EQ(requests(Endpoint::widget), 0);
}

TEST_F(HostileService, AWrongTokenAnswerIsRefused)
{
    expectSignInsRefused({
        {OAuthFault::invalidClient400, Kind::invalidClient},
        {OAuthFault::invalidGrant, Kind::invalidGrant},
        {OAuthFault::tokenTypeNotBearer, Kind::malformedResponse},
    });
}

TEST_F(HostileService, AnUnknownClientSignsOutAndTheNextSignInRegistersAgain)
{
    for (const auto fault : {OAuthFault::invalidClient400, OAuthFault::invalidClient401}) {
        const auto account = session();
        const auto registrations = requests(Endpoint::registration);
        service.state().faults.set(fault);
        EXPECT_TRUE(isSignedOut(synced(account)));
        behave();
        EXPECT_TRUE(signedIn().has_value());
        EXPECT_EQ(requests(Endpoint::registration), registrations + 1);
    }
}

TEST_F(HostileService, AClientThatTheServerForgotIsRegisteredAgainBeforeTheBrowserIsOpened)
{
    ASSERT_TRUE(signedIn().has_value());
    service.forgetClients();
    EXPECT_TRUE(signedIn().has_value());
    EXPECT_EQ(requests(Endpoint::registration), 2);
}

TEST_F(HostileService, ARefreshWithoutANewRefreshTokenIsMalformedAndKeepsTheOldOne)
{
    const auto account = session();
    service.state().faults.set(OAuthFault::noNewRefreshToken);
    EXPECT_EQ(reasonOf(synced(account)), ReasonKind::malformed);
    behave();
    EXPECT_TRUE(isUpdated(synced(account)));
}

TEST_F(HostileService, WhatIsOptionalMayBeMissing)
{
    for (const auto fault :
         {OAuthFault::issNotPromised, OAuthFault::resourceNotFound, OAuthFault::resourceEmpty,
          OAuthFault::noExpiresIn, OAuthFault::registrationOk}) {
        secrets.values.clear();
        service.state().faults.set(fault);
        EXPECT_TRUE(signedIn().has_value()) << static_cast<int>(fault);
        behave();
    }
}

TEST_F(HostileService, AnEmptyClientIdIsNone)
{
    service.state().faults.set(OAuthFault::emptyClientId);
    const auto result = signedIn();
    ASSERT_FALSE(result.has_value());
    EXPECT_TRUE(isAuthError(result.error(), Kind::malformedResponse));
    EXPECT_TRUE(secrets.values.empty());
}

TEST_F(HostileService, ADeniedRequestIsCancelled)
{
    service.setConsent({local::Consent::Answer::deny});
    const auto result = signedIn();
    ASSERT_FALSE(result.has_value());
    EXPECT_TRUE(isAuthError(result.error(), Kind::cancelled));
}

TEST_F(HostileService, ARevokedAccessTokenIsReplacedOnce)
{
    const auto account = session();
    EXPECT_TRUE(isUpdated(synced(account)));
    service.expireAccessTokens();
    EXPECT_TRUE(isUpdated(synced(account)));
    EXPECT_EQ(requests(Endpoint::token), 2);
    EXPECT_EQ(requests(Endpoint::widget), 3);
}

} // namespace roost::test
