#include "platform/KeychainSecretStore.h"
#include "tests/platform/SecretServiceStandIn.h"
#include "tests/support/Await.h"
#include "tests/support/PrivateKeyring.h"

#include <gmock/gmock.h>

namespace roost::test {

namespace {

using Collection = SecretServiceStandIn::Collection;
using Why = SecretsUnavailable::Why;

constexpr KeychainSecretStore::Patience patient{.service = guardTime, .user = std::chrono::minutes{10}};

bool isAsked(const SecretServiceStandIn& service)
{
    return runUntil([&service] { return !service.questions().isEmpty(); });
}

} // namespace

TEST(KeyringPrompt, OpensALockedKeyringWithTheUsersPassword)
{
    const PrivateBus bus;
    SecretServiceStandIn service{bus, Collection::locked};
    KeychainSecretStore store{"service", patient};

    Pending unlocking{store.unlock()};
    ASSERT_TRUE(isAsked(service));
    EXPECT_FALSE(unlocking.isDone());
    service.answerWithPassword();

    EXPECT_TRUE(unlocking.get());
    EXPECT_EQ(await(store.get("key")).value(), std::optional<std::string>());
}

TEST(KeyringPrompt, LetsTheUserMakeAKeyringWhereThereIsNone)
{
    const PrivateBus bus;
    SecretServiceStandIn service{bus, Collection::missing};
    KeychainSecretStore store{"service", patient};
    EXPECT_EQ(await(store.get("key")), std::unexpected(SecretsUnavailable{Why::noService}));

    Pending unlocking{store.unlock()};
    ASSERT_TRUE(isAsked(service));
    service.answerWithPassword();

    EXPECT_TRUE(unlocking.get());
}

TEST(KeyringPrompt, IsRefusedByTheUserWhoClosesIt)
{
    const PrivateBus bus;
    SecretServiceStandIn service{bus, Collection::locked};
    KeychainSecretStore store{"service", patient};

    Pending unlocking{store.unlock()};
    ASSERT_TRUE(isAsked(service));
    service.close();

    EXPECT_FALSE(unlocking.get());
    EXPECT_EQ(await(store.get("key")), std::unexpected(SecretsUnavailable{Why::locked}));
}

TEST(KeyringPrompt, IsPutOnceForSeveralCallers)
{
    const PrivateBus bus;
    SecretServiceStandIn service{bus, Collection::locked};
    KeychainSecretStore store{"service", patient};

    Pending first{store.unlock()};
    Pending second{store.unlock()};
    ASSERT_TRUE(isAsked(service));
    service.answerWithPassword();

    EXPECT_TRUE(first.get());
    EXPECT_TRUE(second.get());
    EXPECT_EQ(service.putCount(), 1);
}

TEST(KeyringPrompt, IsNotPutAgainForCallersWhoWaitedWhenItWasClosed)
{
    const PrivateBus bus;
    SecretServiceStandIn service{bus, Collection::locked};
    KeychainSecretStore store{"service", patient};

    Pending first{store.unlock()};
    ASSERT_TRUE(isAsked(service));
    Pending second{store.unlock()};
    service.close();

    EXPECT_FALSE(first.get());
    EXPECT_TRUE(runUntil([&] { return second.isDone() || service.putCount() > 1; }));
    EXPECT_EQ(service.putCount(), 1);
    ASSERT_TRUE(second.isDone());
    EXPECT_FALSE(second.get());

    Pending next{store.unlock()};
    EXPECT_TRUE(isAsked(service)) << "a new click puts a new question";
    service.answerWithPassword();
    EXPECT_TRUE(next.get());
}

TEST(KeyringPrompt, IsSharedAlsoWhenTheFirstCallerNoLongerWaits)
{
    const PrivateBus bus;
    SecretServiceStandIn service{bus, Collection::locked};
    KeychainSecretStore store{"service", {.service = guardTime, .user = std::chrono::seconds{1}}};

    Pending impatient{store.unlock()};
    ASSERT_TRUE(isAsked(service));
    EXPECT_FALSE(impatient.get());
    Pending second{store.unlock()};
    service.close();

    EXPECT_FALSE(second.get());
    EXPECT_FALSE(runUntil([&] { return service.putCount() > 1; }, std::chrono::milliseconds{200}));
}

TEST(KeyringPrompt, IsNeverPutByAnythingButUnlock)
{
    const PrivateBus bus;
    const SecretServiceStandIn service{bus, Collection::locked};
    KeychainSecretStore store{"service", patient};

    EXPECT_EQ(await(store.get("key")), std::unexpected(SecretsUnavailable{Why::locked}));
    EXPECT_EQ(await(store.contains("key")), std::unexpected(SecretsUnavailable{Why::locked}));
    EXPECT_EQ(await(store.keys("")), std::unexpected(SecretsUnavailable{Why::locked}));
    EXPECT_FALSE(await(store.set("value", "key")));
    EXPECT_FALSE(await(store.remove("key")));

    EXPECT_EQ(service.putCount(), 0);
}

TEST(KeyringPrompt, IsNotPutByAnOpenKeyringThatWantsOneForAnItem)
{
    const PrivateBus bus;
    const SecretServiceStandIn service{bus, Collection::open};
    KeychainSecretStore store{"service", patient};

    EXPECT_EQ(await(store.set("value", "key")), std::unexpected(KeychainError{-25308}));

    EXPECT_EQ(service.putCount(), 0);
}

TEST(KeyringPrompt, StaysOnTheScreenWhenNobodyWaitsAnyLonger)
{
    const PrivateBus bus;
    SecretServiceStandIn service{bus, Collection::locked};
    KeychainSecretStore store{"service", {.service = guardTime, .user = std::chrono::milliseconds{300}}};

    Pending impatient{store.unlock()};
    ASSERT_TRUE(isAsked(service));
    EXPECT_FALSE(impatient.get());
    // The keyring is read meanwhile.
    EXPECT_EQ(await(store.get("key")), std::unexpected(SecretsUnavailable{Why::locked}));

    service.answerWithPassword();

    EXPECT_TRUE(await(store.get("key")).has_value());
    EXPECT_TRUE(await(store.unlock()));
    EXPECT_EQ(service.dismissCount(), 0);
}

TEST(KeyringPrompt, IsLeftAloneWhenTheStoreGoes)
{
    const PrivateBus bus;
    const SecretServiceStandIn service{bus, Collection::locked};
    auto store = std::make_unique<KeychainSecretStore>("service", patient);

    Pending unlocking{store->unlock()};
    ASSERT_TRUE(isAsked(service));
    store.reset();

    EXPECT_FALSE(unlocking.get());
    EXPECT_EQ(service.dismissCount(), 0);
}

TEST(KeyringPrompt, EndsWithTheServiceThatPutIt)
{
    const PrivateBus bus;
    auto service = std::make_unique<SecretServiceStandIn>(bus, Collection::locked);
    KeychainSecretStore store{"service", patient};

    Pending unlocking{store.unlock()};
    ASSERT_TRUE(isAsked(*service));
    service.reset();

    EXPECT_FALSE(unlocking.get());
}

TEST(KeyringPrompt, FailsWhereNobodyCanAskTheUser)
{
    const PrivateBus bus;
    PrivateKeyring keyring{bus};
    keyring.startUnlocked();
    keyring.lock();
    KeychainSecretStore store{"service", patient};

    EXPECT_FALSE(await(store.unlock()));
    EXPECT_EQ(await(store.get("key")), std::unexpected(SecretsUnavailable{Why::locked}));
}

} // namespace roost::test
