#include "service/AccountSession.h"

#include "tests/service/SessionWorld.h"
#include "tests/support/LogCatcher.h"

#include <gmock/gmock.h>

namespace roost::test {

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Kind = RoostAuthError::Kind;
using State = AccountSession::State;
using Token = AuthResult<std::string>;
using Trouble = ModelOAuthServer::Trouble;

class AccountSessionTest : public testing::Test {
protected:
    Token valid(const std::shared_ptr<AccountSession>& asked)
    {
        return world.ended(asked->validAccessToken({}));
    }

    Token replaced(const std::shared_ptr<AccountSession>& asked, const std::string& rejected)
    {
        return world.ended(asked->replaceAccessToken(rejected, {}));
    }

    /// What a refresh of a signed-in session fails with; nothing else may have changed.
    Token afterTrouble()
    {
        world.letTokensExpire();
        Token failed = valid(session);
        EXPECT_EQ(session->state(), State::active);
        EXPECT_EQ(world.stored(), "refresh-0-0");
        world.server.trouble = Trouble::none;
        world.lock.isBlocked = false;
        world.secrets.unavailable.reset();
        EXPECT_EQ(valid(session), Token("access-0-1"));
        return failed;
    }

    SessionWorld world;
    std::shared_ptr<AccountSession> session = world.signedIn();
    LogCatcher log;
};

} // namespace

TEST_F(AccountSessionTest, HandsOutTheTokensOfASignInWithoutARefresh)
{
    EXPECT_EQ(session->profileId(), "p1");
    EXPECT_EQ(session->state(), State::active);
    EXPECT_EQ(world.stored(), "refresh-0-0");
    EXPECT_EQ(valid(session), Token("access-0-0"));
    EXPECT_THAT(world.server.tokenRequests(), IsEmpty());
}

TEST_F(AccountSessionTest, KeepsATokenWith91SecondsLeft)
{
    world.now += ModelOAuthServer::lifetime - 91s;
    EXPECT_EQ(valid(session), Token("access-0-0"));
    world.now += 999ms;
    EXPECT_EQ(valid(session), Token("access-0-0"));
    EXPECT_THAT(world.server.tokenRequests(), IsEmpty());
}

TEST_F(AccountSessionTest, RefreshesATokenWithExactly90SecondsLeft)
{
    world.now += ModelOAuthServer::lifetime - 90s;
    EXPECT_EQ(valid(session), Token("access-0-1"));
    EXPECT_THAT(world.server.tokenRequests(), ElementsAre("refresh-0-0"));
    EXPECT_EQ(world.stored(), "refresh-0-1");
    EXPECT_EQ(valid(session), Token("access-0-1"));
    EXPECT_THAT(world.server.tokenRequests(), SizeIs(1));
}

TEST_F(AccountSessionTest, RefreshesWithTheStoredTokenAfterAStart)
{
    const auto restarted = world.makeSession();
    EXPECT_EQ(restarted->state(), State::active);
    EXPECT_EQ(valid(restarted), Token("access-0-1"));
    EXPECT_THAT(world.server.tokenRequests(), ElementsAre("refresh-0-0"));
}

TEST_F(AccountSessionTest, SharesOneRefreshBetweenConcurrentCallers)
{
    world.letTokensExpire();
    Pending first(session->validAccessToken({}));
    Pending second(session->validAccessToken({}));
    Pending third(session->replaceAccessToken("access-0-0", {}));

    EXPECT_EQ(world.endOf(std::move(first)), Token("access-0-1"));
    EXPECT_EQ(second.get(), Token("access-0-1"));
    EXPECT_EQ(third.get(), Token("access-0-1"));
    EXPECT_THAT(world.server.tokenRequests(), SizeIs(1));
}

TEST_F(AccountSessionTest, SharesAFailureToo)
{
    world.letTokensExpire();
    world.server.trouble = Trouble::status500;
    Pending first(session->validAccessToken({}));
    Pending second(session->validAccessToken({}));

    EXPECT_TRUE(failedAs(world.endOf(std::move(first)), Kind::unexpectedResponse));
    EXPECT_TRUE(failedAs(second.get(), Kind::unexpectedResponse));
    EXPECT_THAT(world.server.tokenRequests(), SizeIs(1));

    EXPECT_TRUE(failedAs(valid(session), Kind::unexpectedResponse));
    EXPECT_THAT(world.server.tokenRequests(), SizeIs(2));
}

TEST_F(AccountSessionTest, ReplacesARefusedToken)
{
    EXPECT_EQ(replaced(session, "access-0-0"), Token("access-0-1"));
    EXPECT_THAT(world.server.tokenRequests(), ElementsAre("refresh-0-0"));
}

TEST_F(AccountSessionTest, GivesTheTokenThatHasReplacedTheRefusedOneAlready)
{
    ASSERT_TRUE(replaced(session, "access-0-0").has_value());
    EXPECT_EQ(replaced(session, "access-0-0"), Token("access-0-1"));
    EXPECT_THAT(world.server.tokenRequests(), SizeIs(1));
}

TEST_F(AccountSessionTest, RefreshesWhenTheReplacementIsRunningOutItself)
{
    ASSERT_TRUE(replaced(session, "access-0-0").has_value());
    world.letTokensExpire();
    EXPECT_EQ(replaced(session, "access-0-0"), Token("access-0-2"));
}

TEST_F(AccountSessionTest, ForgetsARefusedTokenEvenWhenNoOtherCanBeHad)
{
    world.server.trouble = Trouble::unreachable;
    EXPECT_TRUE(failedAs(replaced(session, "access-0-0"), Kind::unreachable));
    EXPECT_TRUE(failedAs(valid(session), Kind::unreachable));
}

TEST_F(AccountSessionTest, SignsOutForGoodWhenTheGrantIsGone)
{
    world.letTokensExpire();
    world.server.revoke();

    EXPECT_TRUE(failedAs(valid(session), Kind::invalidGrant));
    EXPECT_EQ(session->state(), State::signedOut);
    EXPECT_EQ(world.stored(), "");
    EXPECT_TRUE(failedAs(valid(session), Kind::invalidGrant));
    EXPECT_TRUE(failedAs(replaced(session, "x"), Kind::invalidGrant));
    EXPECT_THAT(world.server.tokenRequests(), SizeIs(1));
    EXPECT_FALSE(world.lock.isHeld("p1"));
}

TEST_F(AccountSessionTest, SignsOutForGoodWhenTheServerDoesNotKnowTheClient)
{
    world.letTokensExpire();
    world.server.trouble = Trouble::invalidClient;

    EXPECT_TRUE(failedAs(valid(session), Kind::invalidClient));
    EXPECT_EQ(session->state(), State::signedOut);
    EXPECT_EQ(world.stored(), "");
    EXPECT_TRUE(failedAs(valid(session), Kind::invalidGrant));
    EXPECT_THAT(world.server.tokenRequests(), SizeIs(1));
}

TEST_F(AccountSessionTest, KeepsEverythingWhenTheServerCannotBeReached)
{
    world.server.trouble = Trouble::unreachable;
    EXPECT_TRUE(failedAs(afterTrouble(), Kind::unreachable));
}

TEST_F(AccountSessionTest, KeepsEverythingWhenTheServerFails)
{
    world.server.trouble = Trouble::status500;
    EXPECT_EQ(afterTrouble(), Token(std::unexpect, RoostAuthError::unexpectedResponse(500)));
}

TEST_F(AccountSessionTest, KeepsEverythingWhenTheAnswerIsMalformed)
{
    world.server.trouble = Trouble::malformed;
    EXPECT_TRUE(failedAs(afterTrouble(), Kind::malformedResponse));
}

TEST_F(AccountSessionTest, DoesNotTakeALockedStoreForSignedOut)
{
    for (const auto why : {SecretsUnavailable::Why::locked, SecretsUnavailable::Why::noService,
                           SecretsUnavailable::Why::notAnswering}) {
        world.secrets.unavailable = SecretsUnavailable{why};
        const auto restarted = world.makeSession();
        EXPECT_EQ(valid(restarted), Token(std::unexpect, SecretsUnavailable{why}));
        EXPECT_EQ(restarted->state(), State::active);
    }
    EXPECT_THAT(world.server.tokenRequests(), IsEmpty());
    world.secrets.unavailable = SecretsUnavailable{};
    EXPECT_TRUE(failedAs<SecretsUnavailable>(afterTrouble()));
}

TEST_F(AccountSessionTest, AsksNothingWhileAnotherProcessRefreshes)
{
    world.lock.isBlocked = true;
    EXPECT_TRUE(failedAs<RefreshBlocked>(afterTrouble()));
    EXPECT_THAT(world.server.tokenRequests(), SizeIs(1));
}

TEST_F(AccountSessionTest, IsSignedOutWhenTheStoreHasNoToken)
{
    world.secrets.items.erase(SessionWorld::key);
    const auto restarted = world.makeSession();
    EXPECT_EQ(restarted->state(), State::active);

    EXPECT_TRUE(failedAs(valid(restarted), Kind::invalidGrant));
    EXPECT_EQ(restarted->state(), State::signedOut);
    EXPECT_THAT(world.server.tokenRequests(), IsEmpty());
}

TEST_F(AccountSessionTest, IsSignedOutWithItsAccessTokenTooWhenTheStoreHasNone)
{
    world.letTokensExpire();
    world.secrets.items.erase(SessionWorld::key);
    EXPECT_TRUE(failedAs(valid(session), Kind::invalidGrant));
    world.now -= ModelOAuthServer::lifetime;
    EXPECT_TRUE(failedAs(valid(session), Kind::invalidGrant));
}

TEST_F(AccountSessionTest, SendsTheTokenThatCouldNotBeStored)
{
    world.secrets.failWrites = true;
    for (const char* token : {"access-0-1", "access-0-2", "access-0-3"}) {
        world.letTokensExpire();
        EXPECT_EQ(valid(session), Token(token));
    }
    EXPECT_EQ(world.stored(), "refresh-0-0");
    world.secrets.failWrites = false;
    world.letTokensExpire();
    EXPECT_EQ(valid(session), Token("access-0-4"));
    EXPECT_EQ(world.stored(), "refresh-0-4");
    EXPECT_THAT(world.server.tokenRequests(),
                ElementsAre("refresh-0-0", "refresh-0-1", "refresh-0-2", "refresh-0-3"));

    // Stored, and so read from there again.
    world.secrets.items[SessionWorld::key] = "refresh-0-4";
    world.secrets.calls.clear();
    world.letTokensExpire();
    EXPECT_EQ(valid(session), Token("access-0-5"));
    EXPECT_THAT(world.secrets.calls, ElementsAre("get", "get", "set"));
}

TEST_F(AccountSessionTest, RefreshesFromALockedStoreWithWhatItCouldNotStore)
{
    world.secrets.failWrites = true;
    const TokenSet tokens = world.server.signIn();
    EXPECT_EQ(world.ended(session->adopt(tokens)),
              std::unexpected(KeychainError{KeychainError::internalComponent}));
    EXPECT_EQ(session->state(), State::active);
    EXPECT_EQ(valid(session), Token("access-1-0"));

    world.letTokensExpire();
    EXPECT_EQ(valid(session), Token("access-1-1"));
    EXPECT_EQ(world.stored(), "refresh-0-0");
}

TEST_F(AccountSessionTest, StoresTheNewTokenBeforeItHandsOutTheOther)
{
    world.letTokensExpire();
    Pending token(session->validAccessToken({}));
    ASSERT_TRUE(world.turns.runUntil([this] { return world.secrets.answeredSets.size() == 2; }));
    EXPECT_EQ(world.stored(), "refresh-0-1");
    EXPECT_EQ(world.secrets.calls.back(), "set");

    world.letTokensExpire();
    const auto set = world.secrets.calls.size() + 3; // client id, refresh token, and then the store
    ASSERT_TRUE(token.isDone());
    Pending next(session->validAccessToken({}));
    ASSERT_TRUE(world.turns.runUntil([&] { return world.secrets.calls.size() == set; }));
    EXPECT_EQ(world.secrets.calls.back(), "set");
    EXPECT_FALSE(next.isDone());
    EXPECT_FALSE(Pending(session->validAccessToken({})).isDone());
    EXPECT_TRUE(world.lock.isHeld("p1"));
    EXPECT_EQ(world.endOf(std::move(next)), Token("access-0-2"));
    EXPECT_FALSE(world.lock.isHeld("p1"));
}

TEST_F(AccountSessionTest, SurvivesAClockThatJumpsADayEitherWay)
{
    for (const auto jump : {24h, -24h, -24h, 24h}) {
        world.now += jump;
        EXPECT_TRUE(valid(session).has_value());
        // Where the clock hides that a token has expired, the service says so.
        EXPECT_TRUE(replaced(session, *valid(session)).has_value());
        EXPECT_EQ(session->state(), State::active);
    }
}

TEST_F(AccountSessionTest, ForgetsEverythingAtSignOut)
{
    EXPECT_TRUE(world.ended(session->signOut()));
    EXPECT_EQ(session->state(), State::signedOut);
    EXPECT_EQ(world.stored(), "");
    EXPECT_TRUE(failedAs(valid(session), Kind::invalidGrant));
    EXPECT_THAT(world.server.tokenRequests(), IsEmpty());
}

TEST_F(AccountSessionTest, IsSignedOutFromTheCallOnAndSaysWhenTheStoreCouldNotBeAsked)
{
    world.secrets.unavailable = SecretsUnavailable{};
    Pending signingOut(session->signOut());
    EXPECT_EQ(session->state(), State::signedOut);
    EXPECT_FALSE(world.endOf(std::move(signingOut)));
    EXPECT_EQ(session->state(), State::signedOut);
    EXPECT_TRUE(failedAs(valid(session), Kind::invalidGrant));
}

TEST_F(AccountSessionTest, IsActiveAgainFromTheCallOfAdoptOn)
{
    world.ended(session->signOut());
    Pending adopting(session->adopt(world.server.signIn()));
    EXPECT_EQ(session->state(), State::active);
    Pending token(session->validAccessToken({}));
    EXPECT_TRUE(token.isDone());
    EXPECT_EQ(token.get(), Token("access-1-0"));
    EXPECT_TRUE(world.endOf(std::move(adopting)).has_value());
    EXPECT_EQ(world.stored(), "refresh-1-0");
}

TEST_F(AccountSessionTest, IsSettledWhenNoRefreshIsInFlight)
{
    Pending<bool> idle([](auto kept) -> QCoro::Task<bool> {
        auto settling = kept->settled();
        co_await settling;
        co_return true;
    }(session));
    EXPECT_TRUE(idle.isDone());
}

} // namespace roost::test
