#include "service/AccountSession.h"
#include "tests/service/SessionWorld.h"
#include "tests/support/LogCatcher.h"

#include <gmock/gmock.h>

namespace roost::test {

namespace {

using testing::IsEmpty;

using Token = AuthResult<std::string>;

/// Ways in which the turns fall, tried one after the other.
constexpr std::uint64_t orders = 40;

class AccountSessionQuit : public testing::Test {
protected:
    static QCoro::Task<bool> settled(std::shared_ptr<AccountSession> session)
    {
        auto settling = session->settled();
        co_await settling;
        co_return true;
    }

    LogCatcher log;
};

} // namespace

TEST_F(AccountSessionQuit, EndsTheWaitingForAnotherProcessAtOnce)
{
    SessionWorld world;
    const auto session = world.signedIn();
    auto held = world.ended([](SessionWorld* inside) -> QCoro::Task<std::shared_ptr<RefreshLock::Held>> {
        auto locking = inside->lock.acquire("p1", {});
        std::shared_ptr<RefreshLock::Held> lock = co_await locking;
        co_return lock;
    }(&world));
    world.letTokensExpire();
    Pending first(session->validAccessToken({}));
    Pending second(session->validAccessToken({}));
    for (int i = 0; i < 50; ++i) {
        world.turns.resumeOne();
    }
    ASSERT_FALSE(first.isDone());

    session->quit();
    QCoreApplication::sendPostedEvents();
    ASSERT_TRUE(first.isDone() && second.isDone());
    EXPECT_TRUE(failedAs<Stopped>(first.get()));
    EXPECT_TRUE(failedAs<Stopped>(second.get()));
    Pending settling(settled(session));
    EXPECT_TRUE(settling.isDone());
    EXPECT_TRUE(world.turns.runToEnd());
    EXPECT_TRUE(world.lock.isHeld("p1"));
    held.reset();
    EXPECT_FALSE(world.lock.isHeld("p1"));
}

TEST_F(AccountSessionQuit, NeverLosesATokenThatWasSentWhenever)
{
    std::size_t stopped = 0;
    std::size_t refreshed = 0;
    for (std::uint64_t order = 0; order < 10 * orders; ++order) {
        SessionWorld world(order);
        const auto session = world.signedIn();
        world.letTokensExpire();
        Pending token(session->validAccessToken({}));
        for (std::size_t turns = world.turns.below(20); turns > 0; --turns) {
            world.turns.resumeOne();
        }
        const bool wasSent = world.server.mostInFlight() > 0;
        session->quit();
        Pending settling(settled(session));
        EXPECT_EQ(settling.isDone(), token.isDone());

        const Token result = world.endOf(std::move(token));
        EXPECT_TRUE(settling.isDone());
        EXPECT_EQ(wasSent, world.server.mostInFlight() > 0);
        EXPECT_EQ(result, wasSent ? Token("access-0-1") : Token(std::unexpect, Stopped{}));
        EXPECT_EQ(world.stored(), wasSent ? "refresh-0-1" : "refresh-0-0");
        EXPECT_FALSE(world.lock.isHeld("p1"));
        EXPECT_EQ(session->state(), AccountSession::State::active);
        ++(wasSent ? refreshed : stopped);
    }
    EXPECT_GT(stopped, orders);
    EXPECT_GT(refreshed, orders);
}

TEST_F(AccountSessionQuit, StopsEveryLaterRequest)
{
    SessionWorld world;
    const auto session = world.signedIn();
    session->quit();
    Pending valid(session->validAccessToken({}));
    Pending replaced(session->replaceAccessToken("access-0-0", {}));
    ASSERT_TRUE(valid.isDone() && replaced.isDone());
    EXPECT_TRUE(failedAs<Stopped>(valid.get()));
    EXPECT_TRUE(failedAs<Stopped>(replaced.get()));
    EXPECT_THAT(world.server.tokenRequests(), IsEmpty());
}

TEST_F(AccountSessionQuit, StartsNoSecondRefreshForWhoWasOvertaken)
{
    SessionWorld world;
    const auto session = world.signedIn();
    world.letTokensExpire();
    Pending token(session->validAccessToken({}));
    ASSERT_TRUE(world.turns.runUntil([&world] { return !world.server.tokenRequests().empty(); }));
    Pending adopting(session->adopt(world.server.signIn()));
    world.letTokensExpire();
    session->quit();

    EXPECT_TRUE(failedAs<Stopped>(world.endOf(std::move(token))));
    EXPECT_EQ(world.stored(), "refresh-1-0");
    EXPECT_EQ(world.server.tokenRequests().size(), 1U);
}

TEST_F(AccountSessionQuit, LeavesWhatIsUnsavedToBeSaved)
{
    SessionWorld world;
    const auto session = world.signedIn();
    world.secrets.failWrites = true;
    world.letTokensExpire();
    ASSERT_TRUE(world.ended(session->validAccessToken({})).has_value());
    session->quit();
    EXPECT_FALSE(world.ended(session->saveUnsaved()));
    world.secrets.failWrites = false;
    EXPECT_TRUE(world.ended(session->saveUnsaved()));
    EXPECT_EQ(world.stored(), "refresh-0-1");
}

} // namespace roost::test
