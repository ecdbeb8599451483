#include "platform/KeychainSecretStore.h"
#include "tests/support/Await.h"
#include "tests/support/EventLoopWatch.h"
#include "tests/support/PrivateKeyring.h"

#include <gmock/gmock.h>

#include <QTimer>

namespace roost::test {

namespace {

using Why = SecretsUnavailable::Why;
using std::chrono::milliseconds;

constexpr const char* key = "refresh-token|a";
constexpr const char* original = "the original value";

/// A user's session around the store under test.
struct Desktop {
    PrivateBus bus;
    PrivateKeyring keyring{bus};
    std::optional<ScopedVariable> elsewhere;
    /// Long enough for every answer that there will be, short enough to wait for one that there will not.
    KeychainSecretStore store{"world.brisken.roost.mac", {.service = milliseconds{4000}}};

    void storeTheOriginal()
    {
        keyring.startUnlocked();
        KeychainSecretStore earlier{"world.brisken.roost.mac", {.service = guardTime}};
        if (!await(earlier.set(original, key))) {
            throw std::runtime_error("a healthy keyring refused");
        }
    }
};

struct State {
    const char* name;
    void (*enter)(Desktop&);
    void (*leave)(Desktop&);
    Why why;
    std::int32_t status;
};

void PrintTo(const State& state, std::ostream* out) { *out << state.name; }

const std::array states{
    State{"WithoutABus",
          [](Desktop& desktop) {
              desktop.storeTheOriginal();
              desktop.elsewhere.emplace("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
          },
          [](Desktop& desktop) { desktop.elsewhere.reset(); }, Why::noService, -25291},
    State{"WithoutAService",
          [](Desktop& desktop) {
              desktop.storeTheOriginal();
              desktop.keyring.end();
          },
          [](Desktop& desktop) { desktop.keyring.startUnlocked(); }, Why::noService, -25291},
    State{"WithoutADefaultCollection",
          [](Desktop& desktop) {
              desktop.storeTheOriginal();
              desktop.keyring.end();
              std::filesystem::rename(desktop.bus.dataHome() / "keyrings", desktop.bus.dataHome() / "away");
              desktop.keyring.startLocked();
          },
          [](Desktop& desktop) {
              desktop.keyring.end();
              std::filesystem::remove_all(desktop.bus.dataHome() / "keyrings");
              std::filesystem::rename(desktop.bus.dataHome() / "away", desktop.bus.dataHome() / "keyrings");
              desktop.keyring.startUnlocked();
          },
          Why::noService, -25307},
    State{"Locked",
          [](Desktop& desktop) {
              desktop.storeTheOriginal();
              desktop.keyring.lock();
          },
          [](Desktop& desktop) { desktop.keyring.unlock(); }, Why::locked, -25308},
    State{"NeverUnlocked",
          [](Desktop& desktop) {
              desktop.storeTheOriginal();
              desktop.keyring.end();
              desktop.keyring.startLocked();
          },
          [](Desktop& desktop) { desktop.keyring.unlock(); }, Why::locked, -25308},
    State{"Stopped",
          [](Desktop& desktop) {
              desktop.storeTheOriginal();
              desktop.keyring.freeze();
          },
          [](Desktop& desktop) { desktop.keyring.thaw(); }, Why::notAnswering, -67585}};

class KeychainSecretStoreState : public testing::TestWithParam<State> {
protected:
    KeychainSecretStoreState() { GetParam().enter(desktop_); }

    Desktop& desktop() { return desktop_; }
    KeychainSecretStore& store() { return desktop_.store; }

    /// Whether the call that is not answered may be done later all the same.
    static bool isStopped() { return GetParam().why == Why::notAnswering; }

private:
    Desktop desktop_;
};

INSTANTIATE_TEST_SUITE_P(Every, KeychainSecretStoreState, testing::ValuesIn(states),
                         [](const auto& state) { return std::string{state.param.name}; });

} // namespace

TEST_P(KeychainSecretStoreState, IsToldFromAnAnswerByEveryOperation)
{
    const SecretsUnavailable unavailable{GetParam().why};
    Pending got{store().get(key)};
    Pending contained{store().contains(key)};
    Pending listed{store().keys("refresh-token|")};
    Pending stored{store().set("another value", key)};
    Pending removed{store().remove(key)};

    EXPECT_EQ(got.get(), std::unexpected(unavailable));
    EXPECT_EQ(contained.get(), std::unexpected(unavailable));
    EXPECT_EQ(listed.get(), std::unexpected(unavailable));
    EXPECT_EQ(stored.get(), std::unexpected(KeychainError{GetParam().status}));
    EXPECT_FALSE(removed.get());
}

TEST_P(KeychainSecretStoreState, IsToldOfMissingKeysToo)
{
    // Sooner than the bus itself gives up.
    EXPECT_EQ(await(store().get("never there"), std::chrono::seconds{20}),
              std::unexpected(SecretsUnavailable{GetParam().why}));
}

TEST_P(KeychainSecretStoreState, LeavesEveryItemInItsPlaceAndEndsWithoutARestart)
{
    ASSERT_FALSE(await(store().remove(key)));
    if (!isStopped()) {
        ASSERT_FALSE(await(store().set("another value", key)));
    }

    GetParam().leave(desktop());

    EXPECT_EQ(await(store().get(key)).value(), std::optional<std::string>(original));
    EXPECT_EQ(await(store().keys("refresh-token|")), std::vector<std::string>{key});
    EXPECT_TRUE(await(store().set("the next value", key)));
    EXPECT_EQ(await(store().get(key)).value(), std::optional<std::string>("the next value"));
}

TEST_P(KeychainSecretStoreState, NeverHoldsUpTheEventLoop)
{
    const auto askForEverything = [this] {
        EventLoopWatch watch;
        std::optional<Pending<std::expected<std::optional<std::string>, SecretsUnavailable>>> got;
        std::optional<Pending<std::expected<bool, SecretsUnavailable>>> contained;
        std::optional<Pending<std::expected<std::vector<std::string>, SecretsUnavailable>>> listed;
        std::optional<Pending<std::expected<void, KeychainError>>> stored;
        std::optional<Pending<bool>> removed;
        QTimer::singleShot(0, [&] {
            got.emplace(store().get(key));
            contained.emplace(store().contains(key));
            listed.emplace(store().keys(""));
            stored.emplace(store().set("another value", key));
            removed.emplace(store().remove(key));
        });
        EXPECT_TRUE(watch.runUntil([&] {
            return removed && got->isDone() && contained->isDone() && listed->isDone() && stored->isDone() &&
                   removed->isDone();
        }));
        return watch.longestWait();
    };

    constexpr milliseconds limit{50};
    EXPECT_LE(waitInTheBestRound(limit, askForEverything), limit);
}

} // namespace roost::test
