#include "service/AccountSession.h"
#include "tests/service/SessionWorld.h"
#include "tests/support/LogCatcher.h"

#include <gmock/gmock.h>

namespace roost::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Kind = RoostAuthError::Kind;
using State = AccountSession::State;
using Token = AuthResult<std::string>;
using Trouble = ModelOAuthServer::Trouble;

/// Ways in which the turns fall, tried one after the other.
constexpr std::uint64_t orders = 40;

/// A refresh of a session whose access token has run out, which can be stopped at each of its steps.
struct Refresh {
    explicit Refresh(std::uint64_t order) : world(order)
    {
        world.letTokensExpire();
        token.emplace(session->validAccessToken({}));
    }

    /// Until the request has arrived at the server, which answers later.
    void runUntilAsked()
    {
        ASSERT_TRUE(world.turns.runUntil([this] { return !world.server.tokenRequests().empty(); }));
    }

    /// Until the store has been asked to take the new refresh token.
    void runUntilStoring()
    {
        // The first was the sign-in's.
        ASSERT_TRUE(
            world.turns.runUntil([this] { return std::ranges::count(world.secrets.calls, "set") == 2; }));
    }

    Token result() { return world.endOf(*std::exchange(token, std::nullopt)); }

    LogCatcher log;
    SessionWorld world;
    std::shared_ptr<AccountSession> session = world.signedIn();
    std::optional<Pending<Token>> token;
};

/// Appends to `heard` when `session` is settled.
QCoro::Task<void> hearOfSettling(std::shared_ptr<AccountSession> session, int* heard)
{
    auto settling = session->settled();
    co_await settling;
    ++*heard;
}

} // namespace

TEST(AccountSessionRaces, ASignOutBeforeTheRequestKeepsItFromBeingSent)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        Refresh refresh(order);
        Pending signingOut(refresh.session->signOut());

        EXPECT_TRUE(failedAs(refresh.result(), Kind::invalidGrant));
        EXPECT_THAT(refresh.world.server.tokenRequests(), IsEmpty());
        EXPECT_EQ(refresh.session->state(), State::signedOut);
    }
}

TEST(AccountSessionRaces, ALateSuccessAfterASignOutStoresNothing)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        Refresh refresh(order);
        refresh.runUntilAsked();
        Pending signingOut(refresh.session->signOut());

        EXPECT_TRUE(failedAs(refresh.result(), Kind::invalidGrant));
        EXPECT_EQ(refresh.session->state(), State::signedOut);
        EXPECT_EQ(refresh.world.stored(), "");
        EXPECT_THAT(refresh.world.secrets.answeredSets, SizeIs(1)); // that of the sign-in
        EXPECT_TRUE(failedAs(refresh.world.ended(refresh.session->validAccessToken({})), Kind::invalidGrant));
        EXPECT_THAT(refresh.world.server.tokenRequests(), SizeIs(1));
    }
}

TEST(AccountSessionRaces, ALateFailureAfterASignOutIsASignOut)
{
    Refresh refresh(1);
    refresh.world.server.trouble = Trouble::unreachable;
    refresh.runUntilAsked();
    Pending signingOut(refresh.session->signOut());

    EXPECT_TRUE(failedAs(refresh.result(), Kind::invalidGrant));
}

TEST(AccountSessionRaces, ASignOutWhileTheNewTokenIsBeingStoredLeavesNone)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        Refresh refresh(order);
        refresh.runUntilStoring();
        Pending signingOut(refresh.session->signOut());

        EXPECT_TRUE(failedAs(refresh.result(), Kind::invalidGrant));
        EXPECT_EQ(refresh.world.stored(), "");
        EXPECT_TRUE(failedAs(refresh.world.ended(refresh.session->validAccessToken({})), Kind::invalidGrant));
    }
}

TEST(AccountSessionRaces, ALateSuccessLeavesANewSignInAlone)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        Refresh refresh(order);
        refresh.runUntilAsked();
        Pending adopting(refresh.session->adopt(refresh.world.server.signIn()));

        EXPECT_EQ(refresh.result(), Token("access-1-0"));
        EXPECT_TRUE(adopting.get().has_value());
        EXPECT_EQ(refresh.world.stored(), "refresh-1-0");
        EXPECT_EQ(refresh.world.ended(refresh.session->replaceAccessToken("access-1-0", {})),
                  Token("access-1-1"));
        EXPECT_EQ(refresh.world.stored(), "refresh-1-1");
    }
}

TEST(AccountSessionRaces, ALateRefusalLeavesANewSignInAlone)
{
    for (const auto trouble : {Trouble::none, Trouble::invalidClient, Trouble::status500}) {
        for (std::uint64_t order = 0; order < orders; ++order) {
            Refresh refresh(order);
            refresh.world.server.revoke();
            refresh.world.server.trouble = trouble;
            refresh.runUntilAsked();
            Pending adopting(refresh.session->adopt(refresh.world.server.signIn()));

            EXPECT_EQ(refresh.result(), Token("access-1-0"));
            EXPECT_EQ(refresh.session->state(), State::active);
            EXPECT_EQ(refresh.world.stored(), "refresh-1-0");
        }
    }
}

TEST(AccountSessionRaces, ALateResultIsFollowedByARefreshWhenTheNewTokenHasRunOutMeanwhile)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        Refresh refresh(order);
        refresh.runUntilAsked();
        Pending adopting(refresh.session->adopt(refresh.world.server.signIn()));
        Pending second(refresh.session->replaceAccessToken("access-1-0", {}));
        refresh.world.letTokensExpire();

        EXPECT_EQ(refresh.result(), Token("access-1-1"));
        EXPECT_EQ(second.get(), Token("access-1-1"));
        EXPECT_THAT(refresh.world.server.tokenRequests(), ElementsAre("refresh-0-0", "refresh-1-0"));
    }
}

TEST(AccountSessionRaces, ALateResultIsFollowedByOneRefreshAndNoMore)
{
    Refresh refresh(1);
    refresh.runUntilAsked();
    Pending adopting(refresh.session->adopt(refresh.world.server.signIn()));
    refresh.world.letTokensExpire();
    ASSERT_TRUE(
        refresh.world.turns.runUntil([&] { return refresh.world.server.tokenRequests().size() == 2; }));
    Pending again(refresh.session->adopt(refresh.world.server.signIn()));
    refresh.world.letTokensExpire();

    EXPECT_TRUE(failedAs(refresh.result(), Kind::unreachable));
    EXPECT_EQ(refresh.session->state(), State::active);
    EXPECT_EQ(refresh.world.ended(refresh.session->validAccessToken({})), Token("access-2-1"));
}

TEST(AccountSessionRaces, ASignInWhileTheOldTokenIsBeingStoredIsWhatIsStored)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        Refresh refresh(order);
        refresh.runUntilStoring();
        Pending adopting(refresh.session->adopt(refresh.world.server.signIn()));

        EXPECT_EQ(refresh.result(), Token("access-1-0"));
        EXPECT_TRUE(adopting.get().has_value());
        EXPECT_EQ(refresh.world.stored(), "refresh-1-0");
    }
}

TEST(AccountSessionRaces, ASignInThatCouldNotBeStoredGoesBeforeTheOldTokenThatWas)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        Refresh refresh(order);
        refresh.runUntilStoring();
        ASSERT_TRUE(refresh.world.turns.runUntil([&] { return refresh.world.stored() == "refresh-0-1"; }));
        refresh.world.secrets.failWrites = true;
        Pending adopting(refresh.session->adopt(refresh.world.server.signIn()));
        static_cast<void>(refresh.result());
        EXPECT_FALSE(adopting.get().has_value());

        refresh.world.letTokensExpire();
        EXPECT_EQ(refresh.world.ended(refresh.session->validAccessToken({})), Token("access-1-1"));
    }
}

TEST(AccountSessionRaces, ALateAnswerOfTheStoreDoesNotCountForANewerToken)
{
    // Many, since the answer must stay away for a whole refresh.
    for (std::uint64_t order = 0; order < 50 * orders; ++order) {
        SessionWorld world(order);
        const auto session = world.signedIn();
        world.letTokensExpire();
        ASSERT_EQ(world.ended(session->validAccessToken({})), Token("access-0-1"));

        Pending adopting(session->adopt(world.server.signIn()));
        ASSERT_TRUE(world.turns.runUntil([&] { return world.stored() == "refresh-1-0"; }));
        world.secrets.failWrites = true;
        for (const char* token : {"access-1-1", "access-1-2"}) {
            world.letTokensExpire();
            ASSERT_EQ(world.ended(session->validAccessToken({})), Token(token)) << order;
        }
    }
}

TEST(AccountSessionRaces, ASignInWhileTheGoneOneIsBeingRemovedStays)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        Refresh refresh(order);
        refresh.world.server.revoke();
        ASSERT_TRUE(
            refresh.world.turns.runUntil([&] { return refresh.world.secrets.calls.back() == "remove"; }));
        Pending adopting(refresh.session->adopt(refresh.world.server.signIn()));

        EXPECT_EQ(refresh.result(), Token("access-1-0"));
        EXPECT_EQ(refresh.session->state(), State::active);
        EXPECT_EQ(refresh.world.stored(), "refresh-1-0");
    }
}

TEST(AccountSessionRaces, ASignInWhileTheLockIsWaitedForMakesTheRefreshNeedless)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        Refresh refresh(order);
        Pending adopting(refresh.session->adopt(refresh.world.server.signIn()));

        EXPECT_EQ(refresh.result(), Token("access-1-0"));
        EXPECT_THAT(refresh.world.server.tokenRequests(), IsEmpty());
    }
}

TEST(AccountSessionRaces, ASignInWithoutAStoreAndALockThatIsLateSendsTheNewToken)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        Refresh refresh(order);
        refresh.world.secrets.failWrites = true;
        Pending adopting(refresh.session->adopt(refresh.world.server.signIn()));
        refresh.world.letTokensExpire();

        EXPECT_EQ(refresh.result(), Token("access-1-1"));
        EXPECT_THAT(refresh.world.server.tokenRequests(), ElementsAre("refresh-1-0"));
    }
}

TEST(AccountSessionRaces, OneWaiterThatIsCancelledEndsAtOnceAndTheOthersAreServed)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        SessionWorld world(order);
        const auto session = world.signedIn();
        world.letTokensExpire();
        std::stop_source stop;
        Pending cancelled(session->validAccessToken(stop.get_token()));
        Pending other(session->validAccessToken({}));
        ASSERT_TRUE(world.turns.runUntil([&] { return !world.server.tokenRequests().empty(); }));

        stop.request_stop();
        QCoreApplication::sendPostedEvents();
        ASSERT_TRUE(cancelled.isDone());
        EXPECT_TRUE(failedAs<Stopped>(cancelled.get()));
        EXPECT_FALSE(other.isDone());
        Pending later(session->validAccessToken({}));

        EXPECT_EQ(world.endOf(std::move(other)), Token("access-0-1"));
        EXPECT_EQ(later.get(), Token("access-0-1"));
        EXPECT_THAT(world.server.tokenRequests(), SizeIs(1));
    }
}

TEST(AccountSessionRaces, ARefreshGoesOnWhenItsOnlyWaiterIsCancelledAndTheSessionLetGo)
{
    SessionWorld world;
    auto session = world.signedIn();
    const std::weak_ptr<AccountSession> alive = session;
    world.letTokensExpire();
    std::stop_source stop;
    {
        Pending cancelled(session->validAccessToken(stop.get_token()));
        stop.request_stop();
        session.reset();
        EXPECT_TRUE(failedAs<Stopped>(cancelled.get()));
    }
    EXPECT_FALSE(alive.expired());

    EXPECT_TRUE(world.turns.runToEnd());
    EXPECT_EQ(world.stored(), "refresh-0-1");
    EXPECT_TRUE(alive.expired());
}

TEST(AccountSessionRaces, WhoHasStoppedAlreadyStartsNoRefresh)
{
    SessionWorld world;
    const auto session = world.signedIn();
    std::stop_source stop;
    stop.request_stop();

    EXPECT_EQ(world.ended(session->validAccessToken(stop.get_token())), Token("access-0-0"));
    world.letTokensExpire();
    EXPECT_TRUE(failedAs<Stopped>(world.ended(session->validAccessToken(stop.get_token()))));
    EXPECT_THAT(world.server.tokenRequests(), IsEmpty());
}

TEST(AccountSessionRaces, SettlingWaitsForTheRefreshToBeStored)
{
    Refresh refresh(1);
    int settled = 0;
    const QCoro::Task<void> waiting = hearOfSettling(refresh.session, &settled);
    refresh.runUntilStoring();
    EXPECT_EQ(settled, 0);

    EXPECT_TRUE(refresh.world.turns.runUntil([&settled] { return settled == 1; }));
    EXPECT_EQ(refresh.world.stored(), "refresh-0-1");
    EXPECT_FALSE(refresh.world.lock.isHeld("p1"));
}

} // namespace roost::test
