#include "service/InMemorySecretStore.h"

#include "tests/support/Await.h"

#include <gmock/gmock.h>

namespace roost::test {

namespace {

using testing::ElementsAre;
using Why = SecretsUnavailable::Why;

std::int32_t statusOf(const std::expected<void, KeychainError>& result)
{
    return result ? 0 : result.error().status;
}

} // namespace

TEST(InMemorySecretStore, RefusesToWriteWhenToldToAndKeepsThePreviousValue)
{
    InMemorySecretStore store;
    ASSERT_TRUE(await(store.set("first", "key")));

    store.failWrites = true;

    EXPECT_EQ(statusOf(await(store.set("second", "key"))), -25308);
    EXPECT_EQ(statusOf(await(store.set("new", "other"))), -25308);
    EXPECT_EQ(await(store.get("key")).value(), std::optional<std::string>("first"));
    EXPECT_EQ(await(store.contains("other")), false);
}

TEST(InMemorySecretStore, ReadsAndRemovesWhileItRefusesToWrite)
{
    InMemorySecretStore store;
    store.values = {{"key", "value"}};
    store.failWrites = true;

    EXPECT_EQ(await(store.keys("k")), std::vector<std::string>{"key"});
    EXPECT_TRUE(await(store.remove("key")));
    EXPECT_EQ(await(store.get("key")).value(), std::optional<std::string>());
}

TEST(InMemorySecretStore, ListsKeysByThePrefixInTheOrderOfTheirBytes)
{
    InMemorySecretStore store;
    store.values = {{"k", ""}, {"k\xc3\xa9", ""}, {"kz", ""}, {"kZ", ""}, {"l", ""}, {"", ""}};

    EXPECT_THAT(await(store.keys("k")).value(), ElementsAre("k", "kZ", "kz", "k\xc3\xa9"));
    EXPECT_EQ(await(store.keys("")).value().size(), 6U);
}

TEST(InMemorySecretStore, SaysWhyItCannotBeAskedAndChangesNothing)
{
    const std::map<Why, std::int32_t> statuses{
        {Why::locked, -25308}, {Why::noService, -25291}, {Why::notAnswering, -67585}};
    for (const auto& [why, status] : statuses) {
        InMemorySecretStore store;
        store.values = {{"key", "value"}};
        store.unavailable = SecretsUnavailable{why};

        EXPECT_EQ(await(store.get("key")), std::unexpected(SecretsUnavailable{why}));
        EXPECT_EQ(await(store.contains("key")), std::unexpected(SecretsUnavailable{why}));
        EXPECT_EQ(await(store.keys("")), std::unexpected(SecretsUnavailable{why}));
        EXPECT_EQ(statusOf(await(store.set("other", "key"))), status);
        EXPECT_FALSE(await(store.remove("key")));
        EXPECT_THAT(store.values, ElementsAre(testing::Pair("key", "value")));
    }
}

TEST(InMemorySecretStore, IsOpenedByTheUserWhenItIsLocked)
{
    InMemorySecretStore store;
    store.values = {{"key", "value"}};
    store.unavailable = SecretsUnavailable{Why::locked};

    EXPECT_TRUE(await(store.unlock()));
    EXPECT_EQ(await(store.get("key")).value(), std::optional<std::string>("value"));
    EXPECT_TRUE(await(store.unlock()));
}

TEST(InMemorySecretStore, CannotBeOpenedWhenNobodyKeepsSecrets)
{
    InMemorySecretStore store;
    store.unavailable = SecretsUnavailable{Why::noService};

    EXPECT_FALSE(await(store.unlock()));
    EXPECT_FALSE(await(store.get("key")).has_value());
}

} // namespace roost::test
