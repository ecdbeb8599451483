#include "platform/KeychainSecretStore.h"

#include "tests/support/Await.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/PrivateKeyring.h"

#include <gmock/gmock.h>

namespace roost::test {

namespace {

using testing::ElementsAre;
using Why = SecretsUnavailable::Why;
using std::chrono::milliseconds;

constexpr KeychainSecretStore::Patience patient{.service = guardTime};

QMap<QString, QString> attributesOf(const char* account)
{
    return {{QStringLiteral("service"), QStringLiteral("service")},
            {QStringLiteral("account"), QString::fromUtf8(account)}};
}

class KeychainSecretStoreTest : public testing::Test {
protected:
    PrivateBus bus_;
    PrivateKeyring keyring_{bus_};
    KeychainSecretStore store_{"service", patient};
};

} // namespace

TEST_F(KeychainSecretStoreTest, OpensAKeyringWithoutAPasswordByItself)
{
    keyring_.makeWithoutPassword();
    keyring_.startLocked();

    EXPECT_EQ(await(store_.get("key")).value(), std::optional<std::string>());
    EXPECT_TRUE(await(store_.set("value", "key")));
    keyring_.end();
    keyring_.startLocked();
    EXPECT_EQ(await(store_.get("key")).value(), std::optional<std::string>("value"));
}

TEST_F(KeychainSecretStoreTest, DoesNotNoticeARestartOfTheDaemon)
{
    keyring_.startUnlocked();
    ASSERT_TRUE(await(store_.set("value", "key")));
    keyring_.end();
    keyring_.startUnlocked();

    EXPECT_EQ(await(store_.get("key")).value(), std::optional<std::string>("value"));
    EXPECT_TRUE(await(store_.set("next", "key")));
}

TEST(KeychainSecretStoreOnADesktop, HasTheBusStartTheServiceWhichIsLockedThen)
{
    const PrivateBus bus{PrivateBus::Activation::installed};
    PrivateKeyring keyring{bus};
    KeychainSecretStore store{"service", patient};
    const QString service = QStringLiteral("org.freedesktop.secrets");
    // On a busy machine the daemon now and then falls over at its start; whoever asks next has it started
    // anew.
    const auto askUntilItStands = [&] {
        constexpr int attempts = 4;
        auto answer = await(store.get("key"));
        for (int attempt = 1; attempt < attempts && !bus.hasName(service); ++attempt) {
            answer = await(store.get("key"));
        }
        return answer;
    };
    EXPECT_EQ(askUntilItStands(), std::unexpected(SecretsUnavailable{Why::noService}))
        << "there is no keyring yet";
    bus.stopService(service);

    keyring.startUnlocked();
    ASSERT_TRUE(await(store.set("value", "key")));
    keyring.end();

    EXPECT_EQ(askUntilItStands(), std::unexpected(SecretsUnavailable{Why::locked}));
    keyring.unlock();
    EXPECT_EQ(await(store.get("key")).value(), std::optional<std::string>("value"));
}

TEST_F(KeychainSecretStoreTest, GetsNoAnswerFromADaemonThatIsKilledMeanwhile)
{
    keyring_.startUnlocked();
    keyring_.freeze();
    Pending reading{store_.get("key")};
    EXPECT_FALSE(runUntil([&] { return reading.isDone(); }, milliseconds{200}));
    keyring_.end();

    EXPECT_EQ(reading.get(), std::unexpected(SecretsUnavailable{Why::notAnswering}));
    EXPECT_EQ(await(store_.get("key")), std::unexpected(SecretsUnavailable{Why::noService}));
}

TEST_F(KeychainSecretStoreTest, LetsALaterValueWinOverOneThatWasGivenUp)
{
    keyring_.startUnlocked();
    ASSERT_TRUE(await(store_.set("first", "key")));
    KeychainSecretStore impatient{"service", {.service = milliseconds{300}}};
    keyring_.freeze();
    EXPECT_EQ(await(impatient.set("given up", "key")), std::unexpected(KeychainError{-67585}));
    Pending later{store_.set("later", "key")};
    EXPECT_FALSE(runUntil([&] { return later.isDone(); }, milliseconds{200}));
    keyring_.thaw();

    EXPECT_TRUE(later.get());
    EXPECT_EQ(await(store_.get("key")).value(), std::optional<std::string>("later"));
    EXPECT_EQ(keyring_.itemsWith(attributesOf("key")).unlocked, 1);
}

TEST_F(KeychainSecretStoreTest, WaitsNoLongerForManyCallsThanForOne)
{
    keyring_.startUnlocked();
    keyring_.freeze();
    KeychainSecretStore impatient{"service", {.service = milliseconds{2000}}};
    std::vector<std::unique_ptr<Pending<std::expected<void, KeychainError>>>> calls;
    for (int i = 0; i < 100; ++i) {
        calls.push_back(std::make_unique<Pending<std::expected<void, KeychainError>>>(
            impatient.set("value", "key " + std::to_string(i))));
    }

    // One after the other they would take 200 s.
    EXPECT_TRUE(
        runUntil([&] { return std::ranges::all_of(calls, [](const auto& call) { return call->isDone(); }); },
                 std::chrono::seconds{20}));
    keyring_.thaw();
    EXPECT_EQ(await(impatient.contains("key 99")), false) << "what had not begun is never done";
}

TEST_F(KeychainSecretStoreTest, ReadsTheDefaultKeyringBeforeAnyOther)
{
    keyring_.startUnlocked();
    const QString other = keyring_.makeAnother(QStringLiteral("another"));
    keyring_.putItem(other, attributesOf("key"), "of the other");
    EXPECT_EQ(await(store_.get("key")).value(), std::optional<std::string>("of the other"));

    ASSERT_TRUE(await(store_.set("of the default", "key")));

    EXPECT_EQ(await(store_.get("key")).value(), std::optional<std::string>("of the default"));
    EXPECT_THAT(await(store_.keys("")).value(), ElementsAre("key"));
    EXPECT_TRUE(await(store_.remove("key")));
    EXPECT_EQ(keyring_.itemsWith(attributesOf("key")), PrivateKeyring::Items{});
}

TEST_F(KeychainSecretStoreTest, TakesAnItemInAnotherLockedKeyringForLocked)
{
    keyring_.startUnlocked();
    const QString other = keyring_.makeAnother(QStringLiteral("another"));
    keyring_.putItem(other, attributesOf("key"), "of the other");
    keyring_.lock(other);

    EXPECT_EQ(await(store_.get("key")), std::unexpected(SecretsUnavailable{Why::locked}));
    EXPECT_EQ(await(store_.keys("")), std::unexpected(SecretsUnavailable{Why::locked}));
    EXPECT_FALSE(await(store_.remove("key")));
    EXPECT_EQ(keyring_.itemsWith(attributesOf("key")).locked, 1);
    EXPECT_EQ(await(store_.get("never there")).value(), std::optional<std::string>());
}

TEST_F(KeychainSecretStoreTest, KeepsApartWhatBelongsToOtherServices)
{
    keyring_.startUnlocked();
    KeychainSecretStore other{"another service", patient};
    ASSERT_TRUE(await(store_.set("ours", "key")));
    ASSERT_TRUE(await(other.set("theirs", "key")));
    ASSERT_TRUE(await(other.remove("key")));

    EXPECT_EQ(await(store_.get("key")).value(), std::optional<std::string>("ours"));
    EXPECT_EQ(await(other.keys("")), std::vector<std::string>());
}

TEST_F(KeychainSecretStoreTest, FindsNoTextInBytesThatAreNone)
{
    keyring_.startUnlocked();
    keyring_.putItem(PrivateKeyring::defaultPath(), attributesOf("key"), "\xff\xfe");

    EXPECT_EQ(await(store_.get("key")).value(), std::optional<std::string>());
    EXPECT_EQ(await(store_.contains("key")), true);
}

TEST_F(KeychainSecretStoreTest, RefusesWhatTheBusCannotCarry)
{
    keyring_.startUnlocked();
    for (const std::string& key : {std::string("zero\0byte", 9), std::string("\xff")}) {
        EXPECT_EQ(await(store_.set("value", key)), std::unexpected(KeychainError{-50}));
        EXPECT_EQ(await(store_.get(key)).value(), std::optional<std::string>());
        EXPECT_EQ(await(store_.contains(key)), false);
        EXPECT_TRUE(await(store_.remove(key)));
    }
    EXPECT_EQ(await(store_.set("\xc3", "key")), std::unexpected(KeychainError{-50}));
    EXPECT_EQ(await(store_.keys("")), std::vector<std::string>());
}

TEST_F(KeychainSecretStoreTest, SaysNothingOfASecretInAnyLog)
{
    const LogCatcher log;
    testing::internal::CaptureStderr();
    keyring_.startUnlocked();
    EXPECT_TRUE(await(store_.set("canary-7f3a", "key")));
    EXPECT_EQ(await(store_.get("key")).value(), std::optional<std::string>("canary-7f3a"));
    keyring_.lock();
    EXPECT_FALSE(await(store_.set("canary-7f3a", "key")));
    EXPECT_FALSE(await(store_.get("key")).has_value());
    keyring_.end();
    EXPECT_FALSE(await(store_.set("canary-7f3a", "key")));
    const std::string printed = testing::internal::GetCapturedStderr();

    EXPECT_FALSE(log.saw(u"canary"));
    EXPECT_THAT(printed, testing::Not(testing::HasSubstr("canary")));
}

} // namespace roost::test
