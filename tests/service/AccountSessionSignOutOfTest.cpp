#include "service/AccountSession.h"
#include "tests/service/SessionWorld.h"
#include "tests/support/LogCatcher.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace roost::test {

namespace {

using testing::ElementsAre;

using State = AccountSession::State;
using Token = AuthResult<std::string>;

/// Ways in which the turns fall, tried one after the other.
constexpr std::uint64_t orders = 40;

class AccountSessionSignOutOf : public testing::Test {
protected:
    bool signedOutOf(const std::string& token) { return world.ended(session->signOutOf(token)); }

    std::ptrdiff_t removals() const { return std::ranges::count(world.secrets.calls, "remove"); }

    SessionWorld world;
    std::shared_ptr<AccountSession> session = world.signedIn();
    LogCatcher log;
};

} // namespace

TEST_F(AccountSessionSignOutOf, SignsOutOnceHoweverManySayIt)
{
    Pending first(session->signOutOf("access-0-0"));
    Pending second(session->signOutOf("access-0-0"));
    EXPECT_TRUE(world.endOf(std::move(first)));
    EXPECT_TRUE(second.get());
    EXPECT_TRUE(signedOutOf("access-0-0"));
    EXPECT_EQ(session->state(), State::signedOut);
    EXPECT_EQ(world.stored(), "");
    EXPECT_EQ(removals(), 1);
    EXPECT_FALSE(world.lock.isHeld("p1"));
}

TEST_F(AccountSessionSignOutOf, KnowsTheTokensThatWereReplacedMeanwhile)
{
    static_cast<void>(world.ended(session->replaceAccessToken("access-0-0", {})));
    static_cast<void>(world.ended(session->replaceAccessToken("access-0-1", {})));
    EXPECT_TRUE(signedOutOf("access-0-0"));
    EXPECT_EQ(world.stored(), "");
}

TEST_F(AccountSessionSignOutOf, DoesNothingForATokenOfAnOlderSignIn)
{
    static_cast<void>(world.ended(session->adopt(world.server.signIn())));
    const auto calls = world.secrets.calls;
    EXPECT_FALSE(signedOutOf("access-0-0"));
    EXPECT_EQ(world.secrets.calls, calls);
    EXPECT_EQ(world.ended(session->validAccessToken({})), Token("access-1-0"));
}

TEST_F(AccountSessionSignOutOf, LeavesASignInAloneThatComesMeanwhile)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        SessionWorld own(order);
        const auto signedIn = own.signedIn();
        Pending leaving(signedIn->signOutOf("access-0-0"));
        for (std::size_t turns = own.turns.below(6); turns > 0; --turns) {
            own.turns.resumeOne();
        }
        Pending adopting(signedIn->adopt(own.server.signIn()));
        own.endOf(std::move(leaving));
        EXPECT_EQ(signedIn->state(), State::active);
        EXPECT_EQ(own.stored(), "refresh-1-0");
        EXPECT_EQ(own.ended(signedIn->validAccessToken({})), Token("access-1-0"));
    }
}

TEST_F(AccountSessionSignOutOf, LeavesTheSignInOfAnotherProcessAloneAndGoesOnWithIt)
{
    const auto other = world.makeSession();
    static_cast<void>(world.ended(other->adopt(world.server.signIn())));

    EXPECT_FALSE(signedOutOf("access-0-0"));
    EXPECT_EQ(session->state(), State::active);
    EXPECT_EQ(world.stored(), "refresh-1-0");
    EXPECT_EQ(world.ended(session->validAccessToken({})), Token("access-1-1"));
    EXPECT_TRUE(signedOutOf("access-1-1"));
    EXPECT_EQ(world.stored(), "");
}

TEST_F(AccountSessionSignOutOf, GoesOnWithTheSignInOfAnotherProcessInsteadOfWhatIsUnsaved)
{
    world.secrets.failWrites = true;
    world.letTokensExpire();
    ASSERT_EQ(world.ended(session->validAccessToken({})), Token("access-0-1"));
    world.secrets.failWrites = false;
    const auto other = world.makeSession();
    static_cast<void>(world.ended(other->adopt(world.server.signIn())));

    EXPECT_FALSE(signedOutOf("access-0-1"));
    EXPECT_FALSE(world.lock.isHeld("p1"));
    EXPECT_EQ(world.ended(session->validAccessToken({})), Token("access-1-1"));
    EXPECT_THAT(world.server.tokenRequests(), ElementsAre("refresh-0-0", "refresh-1-0"));
}

TEST_F(AccountSessionSignOutOf, SignsOutAlthoughItsOwnTokenIsStoredWithoutItsKnowing)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        SessionWorld own(order);
        const auto signedIn = own.signedIn();
        own.secrets.loseAnswersToWrites = true;
        for (const char* token : {"access-0-1", "access-0-2"}) {
            own.letTokensExpire();
            ASSERT_EQ(own.ended(signedIn->validAccessToken({})), Token(token));
        }
        EXPECT_TRUE(own.ended(signedIn->signOutOf("access-0-2")));
        EXPECT_EQ(own.stored(), "");
    }
}

TEST_F(AccountSessionSignOutOf, SignsOutWhenAnotherProcessHasOrTheStoreCannotSay)
{
    world.secrets.items.erase(SessionWorld::key);
    EXPECT_TRUE(signedOutOf("access-0-0"));
    static_cast<void>(world.ended(session->adopt(world.server.signIn())));
    world.secrets.unavailable = SecretsUnavailable{};
    EXPECT_TRUE(signedOutOf("access-1-0"));
    EXPECT_EQ(session->state(), State::signedOut);
}

TEST_F(AccountSessionSignOutOf, RemembersThatTheStoreCouldNotBeToldAndTellsItLater)
{
    world.secrets.unavailable = SecretsUnavailable{};
    EXPECT_TRUE(signedOutOf("access-0-0"));
    EXPECT_TRUE(session->mayLinger());
    EXPECT_FALSE(world.ended(session->forgetLingering()));
    EXPECT_EQ(world.stored(), "refresh-0-0");

    world.secrets.unavailable.reset();
    EXPECT_TRUE(world.ended(session->forgetLingering()));
    EXPECT_FALSE(session->mayLinger());
    EXPECT_EQ(world.stored(), "");
    const auto calls = world.secrets.calls;
    EXPECT_TRUE(world.ended(session->forgetLingering()));
    EXPECT_EQ(world.secrets.calls, calls);
    EXPECT_FALSE(world.lock.isHeld("p1"));
}

TEST_F(AccountSessionSignOutOf, TellsTheStoreLaterOfItsOwnTokenAlone)
{
    world.secrets.unavailable = SecretsUnavailable{};
    EXPECT_TRUE(signedOutOf("access-0-0"));
    world.secrets.unavailable.reset();
    world.lock.isBlocked = true;
    EXPECT_FALSE(world.ended(session->forgetLingering()));
    EXPECT_EQ(world.stored(), "refresh-0-0");

    world.lock.isBlocked = false;
    world.secrets.items[SessionWorld::key] = "of another process";
    EXPECT_TRUE(world.ended(session->forgetLingering()));
    EXPECT_EQ(world.stored(), "of another process");
    EXPECT_FALSE(session->mayLinger());
}

TEST_F(AccountSessionSignOutOf, LeavesASignInAloneThatComesWhileItTellsTheStoreLater)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        SessionWorld own(order);
        const auto signedIn = own.signedIn();
        own.secrets.unavailable = SecretsUnavailable{};
        EXPECT_TRUE(own.ended(signedIn->signOutOf("access-0-0")));
        own.secrets.unavailable.reset();
        Pending forgetting(signedIn->forgetLingering());
        for (std::size_t turns = own.turns.below(8); turns > 0; --turns) {
            own.turns.resumeOne();
        }
        Pending adopting(signedIn->adopt(own.server.signIn()));
        own.endOf(std::move(forgetting));
        EXPECT_EQ(own.stored(), "refresh-1-0");
        EXPECT_FALSE(signedIn->mayLinger());
        EXPECT_EQ(own.ended(signedIn->validAccessToken({})), Token("access-1-0"));
    }
}

TEST_F(AccountSessionSignOutOf, LeavesNothingLingeringBehindOnceItIsSignedInAgain)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        SessionWorld own(order);
        const auto signedIn = own.signedIn();
        own.secrets.unavailable = SecretsUnavailable{};
        Pending leaving(signedIn->signOut());
        Pending adopting(signedIn->adopt(own.server.signIn()));
        own.endOf(std::move(leaving));
        EXPECT_FALSE(signedIn->mayLinger());
        EXPECT_EQ(own.ended(signedIn->validAccessToken({})), Token("access-1-0"));
    }
}

TEST_F(AccountSessionSignOutOf, ChangesNothingWithoutTheLock)
{
    world.lock.isBlocked = true;
    EXPECT_FALSE(signedOutOf("access-0-0"));
    world.lock.isBlocked = false;
    EXPECT_EQ(world.ended(session->validAccessToken({})), Token("access-0-0"));
    EXPECT_EQ(world.stored(), "refresh-0-0");
}

TEST_F(AccountSessionSignOutOf, TakesARefusedRefreshForNoVerdictOnTheSignInOfAnotherProcess)
{
    for (const auto trouble : {ModelOAuthServer::Trouble::none, ModelOAuthServer::Trouble::invalidClient}) {
        SessionWorld own;
        const auto signedIn = own.signedIn();
        own.letTokensExpire();
        own.server.revoke();
        own.server.trouble = trouble;
        Pending token(signedIn->validAccessToken({}));
        ASSERT_TRUE(own.turns.runUntil([&own] { return !own.server.tokenRequests().empty(); }));
        const auto other = own.makeSession();
        Pending adopting(other->adopt(own.server.signIn()));
        ASSERT_TRUE(own.turns.runUntil([&own] { return own.stored() == "refresh-1-0"; }));

        EXPECT_TRUE(failedAs(own.endOf(std::move(token)), RoostAuthError::Kind::unreachable));
        EXPECT_EQ(signedIn->state(), State::active);
        EXPECT_EQ(own.stored(), "refresh-1-0");
        own.server.trouble = ModelOAuthServer::Trouble::none;
        own.secrets.items[ModelOAuthServer::clientKey()] = ModelOAuthServer::clientID;
        EXPECT_EQ(own.ended(signedIn->validAccessToken({})), Token("access-1-1"));
    }
}

} // namespace roost::test
