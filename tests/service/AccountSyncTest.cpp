#include "service/AccountSync.h"

#include "model/RoostJSON.h"
#include "model/RoostSnapshotFields.h"
#include "tests/service/SessionWorld.h"
#include "tests/support/LogCatcher.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace roost::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Outcome = SyncOutcome::Any;
using Reason = SyncReason::Kind;
using State = AccountSession::State;
using Trouble = ModelOAuthServer::Trouble;

const Outcome signedOut = SyncOutcome::SignedOut{};

Outcome failed(Reason kind, std::optional<double> retryAfter = std::nullopt)
{
    return SyncOutcome::Failed{SyncReason{kind, retryAfter}};
}

RoostSnapshot snapshot(const std::string& name)
{
    RoostSnapshot made;
    made.generatedAt = Date(std::chrono::seconds(1'718'000'000));
    made.profile = {.id = "p1", .name = name, .avatarUrl = std::nullopt};
    return made;
}

HttpResult answer(int status) { return HttpResponse{.status = status, .headers = {}, .body = {}}; }

HttpResult answer(const RoostSnapshot& sent)
{
    return HttpResponse{
        .status = 200, .headers = {}, .body = QByteArray::fromStdString(RoostJSON::encoder().encode(sent))};
}

HttpResult busy(const QByteArray& retryAfter)
{
    return HttpResponse{.status = 503, .headers = {{"Retry-After", retryAfter}}, .body = {}};
}

class AccountSyncTest : public testing::Test {
protected:
    /// The outcome when the widget endpoint gives these answers, one after the other.
    Outcome fetched(std::deque<HttpResult> answers, std::stop_token stop = {})
    {
        world.widgetAnswers = std::move(answers);
        const AccountSync sync(WidgetAPI(ModelOAuthServer::baseURL(), world.http));
        return world.ended(sync.fetch(session, std::move(stop)));
    }

    std::ptrdiff_t removals() const { return std::ranges::count(world.secrets.calls, "remove"); }

    SessionWorld world;
    std::shared_ptr<AccountSession> session = world.signedIn();
    LogCatcher log;
};

} // namespace

TEST_F(AccountSyncTest, GivesTheSnapshotOfA200)
{
    EXPECT_EQ(fetched({answer(snapshot("Mira"))}), Outcome(SyncOutcome::Updated{snapshot("Mira")}));
    EXPECT_THAT(world.widgetRequests, ElementsAre("Bearer access-0-0"));
    EXPECT_THAT(world.server.tokenRequests(), IsEmpty());
}

TEST_F(AccountSyncTest, RecoversOnceFromARefusedToken)
{
    EXPECT_EQ(fetched({answer(401), answer(snapshot("Second"))}),
              Outcome(SyncOutcome::Updated{snapshot("Second")}));
    EXPECT_THAT(world.widgetRequests, ElementsAre("Bearer access-0-0", "Bearer access-0-1"));
    EXPECT_THAT(world.server.tokenRequests(), SizeIs(1));
    EXPECT_EQ(session->state(), State::active);
}

TEST_F(AccountSyncTest, SignsOutWhenTheFreshTokenIsRefusedToo)
{
    EXPECT_EQ(fetched({answer(401), answer(401), answer(snapshot("Third"))}), signedOut);
    EXPECT_THAT(world.widgetRequests, SizeIs(2));
    EXPECT_EQ(session->state(), State::signedOut);
    EXPECT_EQ(world.stored(), "");
    EXPECT_EQ(removals(), 1);
}

TEST_F(AccountSyncTest, SignsOutWhenTheFreshTokenIsForbidden)
{
    EXPECT_EQ(fetched({answer(401), answer(403)}), signedOut);
    EXPECT_EQ(session->state(), State::signedOut);
    EXPECT_EQ(removals(), 1);
}

TEST_F(AccountSyncTest, FailsWhenTheServiceIsBusyForTheFreshToken)
{
    EXPECT_EQ(fetched({answer(401), answer(503)}), failed(Reason::unavailable));
    EXPECT_EQ(fetched({answer(401), busy("120")}), failed(Reason::unavailable, 120));
    EXPECT_EQ(session->state(), State::active);
}

TEST_F(AccountSyncTest, SignsOutAtOnceWhenTheProfileIsForbidden)
{
    EXPECT_EQ(fetched({answer(403)}), signedOut);
    EXPECT_THAT(world.widgetRequests, SizeIs(1));
    EXPECT_THAT(world.server.tokenRequests(), IsEmpty());
    EXPECT_EQ(session->state(), State::signedOut);
    EXPECT_EQ(removals(), 1);
}

TEST_F(AccountSyncTest, FailsAndStaysSignedInForEverythingElse)
{
    EXPECT_EQ(fetched({busy("120")}), failed(Reason::unavailable, 120));
    EXPECT_EQ(fetched({answer(429)}), failed(Reason::unavailable));
    EXPECT_EQ(fetched({answer(404)}), failed(Reason::malformed));
    EXPECT_EQ(fetched({}), failed(Reason::unreachable));
    EXPECT_EQ(session->state(), State::active);
    EXPECT_EQ(world.stored(), "refresh-0-0");
    EXPECT_THAT(world.server.tokenRequests(), IsEmpty());
}

TEST_F(AccountSyncTest, IsSignedOutWhenTheGrantIsGoneAndAsksNothing)
{
    world.letTokensExpire();
    world.server.revoke();
    EXPECT_EQ(fetched({}), signedOut);
    EXPECT_THAT(world.widgetRequests, IsEmpty());
    EXPECT_EQ(removals(), 1); // the session's own
    EXPECT_EQ(fetched({}), signedOut);
    EXPECT_EQ(removals(), 1);
}

TEST_F(AccountSyncTest, IsSignedOutWhenTheClientIsUnknownWhileItRecovers)
{
    world.server.trouble = Trouble::invalidClient;
    EXPECT_EQ(fetched({answer(401)}), signedOut);
    EXPECT_THAT(world.widgetRequests, SizeIs(1));
}

TEST_F(AccountSyncTest, FailsWhenThereIsNoTokenForAPassingReason)
{
    for (const auto& [trouble, reason] : {std::pair(Trouble::status500, Reason::unreachable),
                                          std::pair(Trouble::unreachable, Reason::unreachable),
                                          std::pair(Trouble::malformed, Reason::malformed)}) {
        world.server.trouble = trouble;
        EXPECT_EQ(fetched({answer(401)}), failed(reason));
        world.letTokensExpire();
        EXPECT_EQ(fetched({}), failed(reason));
        EXPECT_EQ(session->state(), State::active);
    }
    EXPECT_THAT(world.widgetRequests, SizeIs(1)); // the refused token is gone
}

TEST_F(AccountSyncTest, IsUnreachableWhenThisMachineIsTheTrouble)
{
    world.letTokensExpire();
    world.lock.isBlocked = true;
    EXPECT_EQ(fetched({}), failed(Reason::unreachable));
    world.lock.isBlocked = false;
    world.secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
    EXPECT_EQ(fetched({}), failed(Reason::unreachable));
    EXPECT_EQ(session->state(), State::active);
}

TEST_F(AccountSyncTest, IsUnreachableWhenItIsStopped)
{
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(fetched({answer(403)}, stop.get_token()), failed(Reason::unreachable));
    world.letTokensExpire();
    EXPECT_EQ(fetched({answer(403)}, stop.get_token()), failed(Reason::unreachable));
    EXPECT_EQ(session->state(), State::active);
}

TEST_F(AccountSyncTest, LeavesASignInAloneThatCameAfterTheRefusedRequest)
{
    for (const bool inThisProcess : {true, false}) {
        world.widgetAnswers = {answer(403)};
        world.widgetRequests.clear();
        const AccountSync sync(WidgetAPI(ModelOAuthServer::baseURL(), world.http));
        Pending syncing(sync.fetch(session, {}));
        ASSERT_TRUE(world.turns.runUntil([this] { return !world.widgetRequests.empty(); }));
        const auto signingIn = inThisProcess ? session : world.makeSession();
        Pending adopting(signingIn->adopt(world.server.signIn()));
        ASSERT_TRUE(world.turns.runUntil([&adopting] { return adopting.isDone(); }));

        EXPECT_EQ(world.endOf(std::move(syncing)), failed(Reason::unreachable));
        EXPECT_EQ(session->state(), State::active);
        EXPECT_EQ(world.stored(), world.server.liveToken(world.server.newestGrant()));
        EXPECT_EQ(fetched({answer(snapshot("Mira"))}), Outcome(SyncOutcome::Updated{snapshot("Mira")}));
    }
    EXPECT_EQ(removals(), 0);
}

TEST_F(AccountSyncTest, SharesOneRefreshBetweenTwoSyncsOfOneProfile)
{
    world.letTokensExpire();
    world.widgetAnswers = {answer(snapshot("A")), answer(snapshot("B"))};
    const AccountSync sync(WidgetAPI(ModelOAuthServer::baseURL(), world.http));
    Pending first(sync.fetch(session, {}));
    Pending second(sync.fetch(session, {}));
    EXPECT_TRUE(std::holds_alternative<SyncOutcome::Updated>(world.endOf(std::move(first))));
    EXPECT_TRUE(std::holds_alternative<SyncOutcome::Updated>(second.get()));
    EXPECT_THAT(world.server.tokenRequests(), SizeIs(1));
}

} // namespace roost::test
