#include "service/RefreshTokenKeeper.h"

#include "tests/service/SessionWorld.h"
#include "tests/support/LogCatcher.h"

#include <gmock/gmock.h>

namespace roost::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Stored = std::expected<void, KeychainError>;
using Token = AuthResult<std::string>;

/// Ways in which the turns fall, tried one after the other.
constexpr std::uint64_t orders = 40;

const Stored refused = std::unexpected(KeychainError{KeychainError::internalComponent});

/// More turns than anything takes that does not wait for somebody else.
void takeTurns(SessionWorld& world)
{
    for (int i = 0; i < 200; ++i) {
        world.turns.resumeOne();
    }
}

/// A session that has used up what is stored, and keeps the next refresh token to itself.
struct Unsaved {
    explicit Unsaved(std::uint64_t order = 1) : world(order)
    {
        world.secrets.failWrites = true;
        world.letTokensExpire();
        EXPECT_EQ(world.ended(session->validAccessToken({})), Token("access-0-1"));
        EXPECT_EQ(world.stored(), "refresh-0-0");
    }

    LogCatcher log;
    SessionWorld world;
    std::shared_ptr<AccountSession> session = world.signedIn();
};

} // namespace

TEST(RefreshTokenKeeper, KeepsOthersFromTheUsedUpTokenUntilTheNextOneIsStored)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        Unsaved unsaved(order);
        SessionWorld& world = unsaved.world;
        EXPECT_TRUE(world.lock.isHeld("p1"));
        const auto other = world.makeSession();
        Pending token(other->validAccessToken({}));
        takeTurns(world);
        EXPECT_THAT(world.server.tokenRequests(), ElementsAre("refresh-0-0"));

        world.secrets.failWrites = false;
        Pending saving(unsaved.session->saveUnsaved());
        EXPECT_EQ(world.endOf(std::move(token)), Token("access-0-2"));
        EXPECT_TRUE(saving.get());
        EXPECT_EQ(world.server.reuses(), 0U);
        EXPECT_FALSE(world.lock.isHeld("p1"));
    }
}

TEST(RefreshTokenKeeper, RefreshesUnderTheLockThatItKept)
{
    Unsaved unsaved;
    unsaved.world.letTokensExpire();
    EXPECT_EQ(unsaved.world.ended(unsaved.session->validAccessToken({})), Token("access-0-2"));
    EXPECT_TRUE(unsaved.world.lock.isHeld("p1"));
    EXPECT_EQ(unsaved.world.lock.mostAskers(), 1U);

    unsaved.world.secrets.failWrites = false;
    unsaved.world.letTokensExpire();
    EXPECT_EQ(unsaved.world.ended(unsaved.session->validAccessToken({})), Token("access-0-3"));
    EXPECT_FALSE(unsaved.world.lock.isHeld("p1"));
}

TEST(RefreshTokenKeeper, LetsTheLockGoWithTheSession)
{
    Unsaved unsaved;
    unsaved.session.reset();
    EXPECT_FALSE(unsaved.world.lock.isHeld("p1"));
}

TEST(RefreshTokenKeeper, LetsTheLockGoOnceTheTokenOfASignOutIsRemoved)
{
    Unsaved unsaved;
    Pending signingOut(unsaved.session->signOut());
    EXPECT_TRUE(unsaved.world.lock.isHeld("p1"));
    EXPECT_TRUE(unsaved.world.endOf(std::move(signingOut)));
    EXPECT_EQ(unsaved.world.stored(), "");
    EXPECT_FALSE(unsaved.world.lock.isHeld("p1"));
    EXPECT_TRUE(unsaved.world.ended(unsaved.session->saveUnsaved()));
    EXPECT_EQ(unsaved.world.stored(), "");
}

TEST(RefreshTokenKeeper, LetsTheLockGoOnceASignInIsStored)
{
    Unsaved unsaved;
    EXPECT_EQ(unsaved.world.ended(unsaved.session->adopt(unsaved.world.server.signIn())), refused);
    EXPECT_TRUE(unsaved.world.lock.isHeld("p1"));
    unsaved.world.secrets.failWrites = false;
    EXPECT_TRUE(unsaved.world.ended(unsaved.session->adopt(unsaved.world.server.signIn())).has_value());
    EXPECT_FALSE(unsaved.world.lock.isHeld("p1"));
}

TEST(RefreshTokenKeeper, SavesNothingWhereNothingIsUnsaved)
{
    SessionWorld world;
    const auto session = world.signedIn();
    world.secrets.calls.clear();
    EXPECT_TRUE(world.ended(session->saveUnsaved()));
    EXPECT_THAT(world.secrets.calls, IsEmpty());
    EXPECT_EQ(world.lock.mostAskers(), 0U);
}

TEST(RefreshTokenKeeper, SaysThatTheStoreStillDoesNotTakeTheToken)
{
    Unsaved unsaved;
    EXPECT_FALSE(unsaved.world.ended(unsaved.session->saveUnsaved()));
    EXPECT_TRUE(unsaved.world.lock.isHeld("p1"));
    unsaved.world.secrets.failWrites = false;
    unsaved.world.secrets.loseAnswersToWrites = true;
    EXPECT_FALSE(unsaved.world.ended(unsaved.session->saveUnsaved()));
    EXPECT_TRUE(unsaved.world.lock.isHeld("p1"));
    unsaved.world.secrets.loseAnswersToWrites = false;
    EXPECT_TRUE(unsaved.world.ended(unsaved.session->saveUnsaved()));
    EXPECT_EQ(unsaved.world.stored(), "refresh-0-1");
}

TEST(RefreshTokenKeeper, SavesATokenWhoseSignInWasNotMadeUnderTheLock)
{
    SessionWorld world;
    const auto session = world.signedIn();
    world.secrets.failWrites = true;
    EXPECT_EQ(world.ended(session->adopt(world.server.signIn())), refused);
    world.lock.isBlocked = true;
    world.secrets.failWrites = false;
    EXPECT_FALSE(world.ended(session->saveUnsaved()));
    EXPECT_EQ(world.stored(), "refresh-0-0");
    world.lock.isBlocked = false;
    EXPECT_TRUE(world.ended(session->saveUnsaved()));
    EXPECT_EQ(world.stored(), "refresh-1-0");
    EXPECT_FALSE(world.lock.isHeld("p1"));
}

TEST(RefreshTokenKeeper, LetsASignInOrOutGoBeforeWhatIsSavedOnceMore)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        Unsaved unsaved(order);
        unsaved.world.secrets.failWrites = false;
        Pending saving(unsaved.session->saveUnsaved());
        for (std::size_t turns = unsaved.world.turns.below(4); turns > 0; --turns) {
            unsaved.world.turns.resumeOne();
        }
        const bool signsIn = order % 2 == 0;
        const TokenSet tokens = unsaved.world.server.signIn();
        std::optional<Pending<Stored>> adopting;
        std::optional<Pending<bool>> signingOut;
        if (signsIn) {
            adopting.emplace(unsaved.session->adopt(tokens));
        } else {
            signingOut.emplace(unsaved.session->signOut());
        }
        EXPECT_TRUE(unsaved.world.turns.runToEnd());
        EXPECT_TRUE(saving.isDone());
        EXPECT_EQ(unsaved.world.stored(), signsIn ? tokens.refreshToken : "");
        EXPECT_FALSE(unsaved.world.lock.isHeld("p1"));
    }
}

TEST(RefreshTokenKeeper, GoesOnFromWhatAnotherProcessMadeOfATokenThatWasStoredAllTheSame)
{
    std::size_t found = 0;
    for (std::uint64_t order = 0; order < orders; ++order) {
        SessionWorld world(order);
        const auto session = world.signedIn();
        const auto other = world.makeSession();
        world.secrets.loseAnswersToWrites = true;
        Pending adopting(session->adopt(world.server.signIn()));
        // From when it has taken effect on; most have not heard of its end then.
        ASSERT_TRUE(world.turns.runUntil(
            [&] { return world.stored() == "refresh-1-0" || world.secrets.answeredSets.size() == 2; }));
        world.secrets.loseAnswersToWrites = false;
        world.letTokensExpire();
        Pending others(other->validAccessToken({}));
        Pending own(session->validAccessToken({}));
        ASSERT_TRUE(world.turns.runToEnd());
        EXPECT_TRUE(own.get().has_value()) << order;
        EXPECT_TRUE(others.get().has_value()) << order;
        EXPECT_EQ(world.server.reuses(), 0U) << order;
        found += others.get() == Token("access-1-1") && own.get() == Token("access-1-2");
    }
    EXPECT_GT(found, 0U);
}

TEST(RefreshTokenKeeper, SharesOneLockBetweenWhatASessionDoesAtOnce)
{
    for (std::uint64_t order = 0; order < orders; ++order) {
        Unsaved unsaved(order);
        SessionWorld& world = unsaved.world;
        ASSERT_EQ(world.ended(unsaved.session->signOut()), true);
        ASSERT_FALSE(world.ended(unsaved.session->adopt(world.server.signIn())).has_value());
        world.letTokensExpire();
        world.secrets.failWrites = false;
        Pending token(unsaved.session->validAccessToken({}));
        Pending saving(unsaved.session->saveUnsaved());
        Pending leaving(unsaved.session->signOutOf("access-1-0"));

        ASSERT_TRUE(world.turns.runToEnd());
        EXPECT_TRUE(leaving.get());
        EXPECT_TRUE(token.isDone() && saving.isDone());
        EXPECT_EQ(world.lock.mostAskers(), 1U);
        EXPECT_EQ(world.stored(), "");
        EXPECT_FALSE(world.lock.isHeld("p1"));
    }
}

} // namespace roost::test
