#include "service/AccountSession.h"
#include "tests/service/SessionWorld.h"
#include "tests/support/LogCatcher.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <set>

namespace roost::test {

namespace {

using namespace std::chrono_literals;

using Kind = RoostAuthError::Kind;
using State = AccountSession::State;
using Token = AuthResult<std::string>;
using Trouble = ModelOAuthServer::Trouble;

struct Waiter {
    std::stop_source stop;
    std::string rejected;
    std::optional<Token> result;
};

/// One life of a profile: operations at random, turns at random between them, laws checked whenever something
/// is heard and at the end. A broken law is a sentence in `broken`.
class Life {
public:
    Life(std::uint64_t seed, std::size_t processes) : world(seed)
    {
        sessions.push_back(world.signedIn());
        while (sessions.size() < processes) {
            sessions.push_back(world.makeSession());
        }
    }

    void live(int operations, const std::function<void(Life&)>& operate)
    {
        for (int i = 0; i < operations && broken.empty(); ++i) {
            operate(*this);
            check();
            for (std::size_t turns = world.turns.below(7); turns > 0; --turns) {
                world.turns.resumeOne();
                check();
            }
        }
        heal();
        runToEnd();
    }

    void ask(std::string rejected = {})
    {
        auto& session = sessions[world.turns.below(sessions.size())];
        auto waiter = std::make_shared<Waiter>();
        waiter->rejected = std::move(rejected);
        waiters.push_back(waiter);
        auto task = waiter->rejected.empty()
                        ? session->validAccessToken(waiter->stop.get_token())
                        : session->replaceAccessToken(waiter->rejected, waiter->stop.get_token());
        ++open;
        hear(this, session, waiter, std::move(task));
    }

    void cancelOne()
    {
        if (waiters.empty()) {
            return;
        }
        const auto waiter = waiters[world.turns.below(waiters.size())];
        const bool waited = !waiter->result.has_value();
        waiter->stop.request_stop();
        QCoreApplication::sendPostedEvents();
        if (waited) {
            require(waiter->result && failedAs<Stopped>(*waiter->result),
                    "a cancelled waiter ends as stopped");
        }
    }

    void adopt()
    {
        mayBeSignedOut = false;
        lastState = State::active;
        adopted = world.server.newestGrant() + 1;
        ++open;
        hearEnd(this, sessions.front()->adopt(world.server.signIn()));
    }

    void signOut()
    {
        mayBeSignedOut = true;
        ++open;
        hearRemoval(this, sessions.front()->signOut());
    }

    void signOutOf(std::string accessToken)
    {
        mayBeSignedOut = true;
        ++open;
        hearRemoval(this, sessions.front()->signOutOf(std::move(accessToken)));
    }

    void saveUnsaved()
    {
        ++open;
        hearRemoval(this, sessions[world.turns.below(sessions.size())]->saveUnsaved());
    }

    /// One of the processes quits as it should, and starts again; unless it must keep what is unsaved.
    void restart(std::size_t process)
    {
        ++open;
        quitting.insert(sessions[process].get());
        hearQuit(this, process, sessions[process]);
    }

    /// Processes that have quit have started again as well.
    void restartWhoHasQuit()
    {
        for (std::size_t process = 0; process < sessions.size(); ++process) {
            if (quitting.contains(sessions[process].get())) {
                restart(process);
            }
        }
        runToEnd();
    }

    void settle()
    {
        ++open;
        hearSettled(this, sessions.front());
    }

    void heal()
    {
        world.secrets.failWrites = false;
        world.secrets.loseAnswersToWrites = false;
        world.secrets.unavailable.reset();
        world.server.trouble = Trouble::none;
        world.lock.isBlocked = false;
        if (sessions.size() > 1) {
            // As long as one keeps a token to itself, the others wait.
            for (const auto& session : sessions) {
                ++open;
                hearRemoval(this, session->saveUnsaved());
            }
        }
    }

    void runToEnd()
    {
        require(world.turns.runToEnd(), "everything ends");
        check();
        require(open == 0, "no waiter is left hanging");
    }

    /// What holds at every moment.
    void check()
    {
        require(world.server.mostInFlight() <= 1, "one token request at a time");
        require(sessions.size() > 1 || world.lock.mostAskers() <= 1, "one refresh at a time");
        require(world.server.reuses() == 0, "no refresh token is sent twice");
        for (const auto& session : sessions) {
            const bool isSignedOut = session->state() == State::signedOut;
            require(!isSignedOut || mayBeSignedOut || world.server.isRevoked(adopted),
                    "nobody is signed out without a reason");
        }
        if (sessions.size() == 1) {
            require(lastState == State::active || sessions.front()->state() == State::signedOut,
                    "only adopt ends being signed out");
            lastState = sessions.front()->state();
        }
    }

    void require(bool holds, const char* law)
    {
        if (!holds) {
            broken.insert(law);
        }
    }

    LogCatcher log;
    SessionWorld world;
    std::vector<std::shared_ptr<AccountSession>> sessions;
    std::vector<std::shared_ptr<Waiter>> waiters;
    /// Kept, since `quitting` knows them by their addresses.
    std::vector<std::shared_ptr<AccountSession>> ended;
    std::set<const AccountSession*> quitting;
    std::set<std::string> broken;
    std::string lastToken = "access-0-0";
    std::size_t adopted = 0;
    std::size_t open = 0;
    bool mayBeSignedOut = false;
    State lastState = State::active;

private:
    void checkToken(const AccountSession& session, const Waiter& waiter, const std::string& token)
    {
        std::size_t grant = 0;
        std::size_t serial = 0;
        require(std::sscanf(token.c_str(), "access-%zu-%zu", &grant, &serial) == 2, "a token of the server");
        require(session.state() == State::active, "no token after a sign-out");
        require(grant == adopted, "no token of an older sign-in");
        require(token != waiter.rejected, "another token than the refused one");
        const std::string refreshToken = "refresh" + token.substr(token.find('-'));
        require(serial == 0 || std::ranges::count(world.secrets.answeredSets, refreshToken) > 0,
                "the refresh token is stored before the access token is used");
        lastToken = token;
    }

    static QCoro::Task<void> hear(Life* life, std::shared_ptr<AccountSession> session,
                                  std::shared_ptr<Waiter> waiter, QCoro::Task<Token> task)
    {
        waiter->result = co_await task;
        --life->open;
        if (waiter->result->has_value()) {
            life->checkToken(*session, *waiter, **waiter->result);
        } else if (failedAs(*waiter->result, Kind::invalidGrant)) {
            life->require(session->state() == State::signedOut, "an invalid grant is a sign-out");
        } else if (failedAs<Stopped>(*waiter->result)) {
            life->require(waiter->stop.stop_requested() || life->quitting.contains(session.get()),
                          "nobody is stopped unasked");
        }
    }

    static QCoro::Task<void> hearEnd(Life* life, QCoro::Task<std::expected<void, KeychainError>> task)
    {
        co_await task;
        --life->open;
    }

    static QCoro::Task<void> hearRemoval(Life* life, QCoro::Task<bool> task)
    {
        static_cast<void>(co_await task);
        --life->open;
    }

    static QCoro::Task<void> hearQuit(Life* life, std::size_t process,
                                      std::shared_ptr<AccountSession> session)
    {
        session->quit();
        auto settling = session->settled();
        co_await settling;
        auto saving = session->saveUnsaved();
        const bool isSaved = co_await saving;
        --life->open;
        if (isSaved && life->sessions[process] == session) {
            life->sessions[process] = life->world.makeSession();
            life->ended.push_back(session);
        }
    }

    static QCoro::Task<void> hearSettled(Life* life, std::shared_ptr<AccountSession> session)
    {
        auto task = session->settled();
        co_await task;
        --life->open;
        life->require(life->sessions.size() > 1 || life->world.server.inFlight() == 0,
                      "settled means settled");
    }
};

void anything(Life& life)
{
    SessionWorld& world = life.world;
    const std::size_t choice = world.turns.below(100);
    if (choice < 30) {
        life.ask();
    } else if (choice < 46) {
        life.ask(life.lastToken);
    } else if (choice < 58) {
        world.letTokensExpire();
    } else if (choice < 62) {
        world.now += world.turns.below(2) == 0 ? 24h : -24h;
    } else if (choice < 69) {
        life.adopt();
    } else if (choice < 72) {
        life.signOut();
    } else if (choice < 74) {
        life.signOutOf(life.lastToken);
    } else if (choice < 80) {
        life.cancelOne();
    } else if (choice < 82) {
        life.saveUnsaved();
    } else if (choice < 84) {
        world.secrets.loseAnswersToWrites = !world.secrets.loseAnswersToWrites;
    } else if (choice < 86) {
        world.secrets.failWrites = !world.secrets.failWrites;
    } else if (choice < 89) {
        world.secrets.unavailable = world.secrets.unavailable
                                        ? std::nullopt
                                        : std::optional(SecretsUnavailable{SecretsUnavailable::Why::locked});
    } else if (choice < 93) {
        world.server.trouble = static_cast<Trouble>(world.turns.below(4));
    } else if (choice < 95) {
        world.lock.isBlocked = !world.lock.isBlocked;
    } else if (choice < 97) {
        world.server.revoke();
    } else {
        life.settle();
    }
}

/// What two processes may meet that share a store which takes every token.
void anythingOfTwo(Life& life)
{
    SessionWorld& world = life.world;
    const std::size_t choice = world.turns.below(100);
    if (choice < 40) {
        life.ask();
    } else if (choice < 55) {
        life.ask(life.lastToken);
    } else if (choice < 70) {
        world.letTokensExpire();
    } else if (choice < 74) {
        world.now += world.turns.below(2) == 0 ? 24h : -24h;
    } else if (choice < 82) {
        life.cancelOne();
    } else if (choice < 88) {
        world.server.trouble = static_cast<Trouble>(world.turns.below(4));
    } else if (choice < 92) {
        world.lock.isBlocked = !world.lock.isBlocked;
    } else {
        // One of them quits without waiting, and starts again.
        life.sessions[world.turns.below(2)] = world.makeSession();
    }
}

/// What two processes may meet whose store does not take every token, or does not say so. They end only when
/// nothing is unsaved.
void anythingOfTwoThatCannotStore(Life& life)
{
    SessionWorld& world = life.world;
    const std::size_t choice = world.turns.below(100);
    if (choice < 36) {
        life.ask();
    } else if (choice < 48) {
        life.ask(life.lastToken);
    } else if (choice < 62) {
        world.letTokensExpire();
    } else if (choice < 68) {
        life.cancelOne();
    } else if (choice < 74) {
        world.secrets.failWrites = !world.secrets.failWrites;
    } else if (choice < 82) {
        world.secrets.loseAnswersToWrites = !world.secrets.loseAnswersToWrites;
    } else if (choice < 85) {
        world.secrets.unavailable = world.secrets.unavailable
                                        ? std::nullopt
                                        : std::optional(SecretsUnavailable{SecretsUnavailable::Why::locked});
    } else if (choice < 90) {
        life.saveUnsaved();
    } else if (choice < 93) {
        world.server.trouble = static_cast<Trouble>(world.turns.below(4));
    } else if (choice < 96) {
        world.lock.isBlocked = !world.lock.isBlocked;
    } else {
        life.restart(world.turns.below(2));
    }
}

/// What holds once everything has ended: whoever is signed in can go on, and the newest token is stored.
void checkWhatIsLeft(Life& life)
{
    SessionWorld& world = life.world;
    life.restartWhoHasQuit();
    for (const auto& session : life.sessions) {
        const bool isGone = session->state() == State::signedOut || world.server.isRevoked(life.adopted);
        if (session->state() == State::signedOut && world.secrets.notRemoved.empty()) {
            life.require(world.stored().empty(), "signing out leaves no token");
        }
        world.now += 24h * 100; // more than the clock can have gone back
        const Token token = world.ended(session->validAccessToken({}));
        life.require(token.has_value() == !isGone, "no rotated token is lost");
        life.require(isGone || world.stored() == world.server.liveToken(life.adopted),
                     "the newest token is stored");
    }
    life.check();
    life.require(world.turns.suspended() == 0 && life.open == 0, "every coroutine has ended");
    std::vector<std::weak_ptr<AccountSession>> left(life.sessions.begin(), life.sessions.end());
    left.insert(left.end(), life.ended.begin(), life.ended.end());
    life.sessions.clear();
    life.ended.clear();
    life.require(std::ranges::all_of(left, [](const auto& session) { return session.expired(); }),
                 "nothing holds on to a session");
}

void expectLives(std::uint64_t seeds, std::size_t processes, int operations,
                 const std::function<void(Life&)>& operate)
{
    std::size_t requests = 0;
    for (std::uint64_t seed = 0; seed < seeds; ++seed) {
        Life life(seed, processes);
        life.live(operations, operate);
        checkWhatIsLeft(life);
        ASSERT_THAT(life.broken, testing::IsEmpty()) << "seed " << seed;
        requests += life.world.server.tokenRequests().size();
    }
    EXPECT_GT(requests, seeds);
}

} // namespace

TEST(AccountSessionInterleaving, KeepsItsLawsInEveryOrder) { expectLives(10'000, 1, 60, anything); }

TEST(AccountSessionInterleaving, KeepsItsLawsInTwoProcesses) { expectLives(3'000, 2, 60, anythingOfTwo); }

TEST(AccountSessionInterleaving, KeepsItsLawsInTwoProcessesThatCannotStore)
{
    expectLives(3'000, 2, 60, anythingOfTwoThatCannotStore);
}

} // namespace roost::test
