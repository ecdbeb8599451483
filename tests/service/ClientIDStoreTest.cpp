#include "service/ClientIDStore.h"

#include "service/InMemorySecretStore.h"
#include "tests/support/Await.h"

#include <gtest/gtest.h>

namespace roost::test {

namespace {

using Found = std::expected<std::optional<std::string>, SecretsUnavailable>;
using Why = SecretsUnavailable::Why;

const WebURL issuer = *WebURL::parse("https://Roost.example/%7Ea");
const std::string key = "client-id|https://Roost.example/%7Ea";

class ClientIDStoreTest : public testing::Test {
protected:
    Found found() { return await(ids.find(issuer)); }

    void keep(const std::string& id)
    {
        Pending keeping(done(ids.keep(issuer, id)));
        keeping.get();
    }

    void forget()
    {
        Pending forgetting(done(ids.forget(issuer)));
        forgetting.get();
    }

    static QCoro::Task<bool> done(QCoro::Task<void> task)
    {
        co_await task;
        co_return true;
    }

    InMemorySecretStore secrets;
    ClientIDStore ids{secrets};
};

} // namespace

TEST_F(ClientIDStoreTest, KeepsAnIdUnderTheIssuersTextAsReceived)
{
    keep("c1");
    EXPECT_EQ(secrets.values, (std::map<std::string, std::string>{{key, "c1"}}));
    EXPECT_EQ(found(), "c1");
    EXPECT_EQ(await(ids.find(*WebURL::parse("https://roost.example/~a"))), Found{std::nullopt});
}

TEST_F(ClientIDStoreTest, TakesAnEmptyIdForNone)
{
    EXPECT_EQ(found(), Found{std::nullopt});
    secrets.values[key] = "";
    EXPECT_EQ(found(), Found{std::nullopt});
}

TEST_F(ClientIDStoreTest, ServesAnIdThatCouldNotBeStoredForTheRestOfTheRun)
{
    secrets.failWrites = true;
    keep("c1");
    EXPECT_EQ(found(), "c1");
    secrets.unavailable = SecretsUnavailable{Why::noService};
    EXPECT_EQ(found(), "c1");
    EXPECT_EQ(await(ClientIDStore{secrets}.find(issuer)),
              Found(std::unexpect, SecretsUnavailable{Why::noService}));
}

TEST_F(ClientIDStoreTest, StoresAgainWhatTheStoreDidNotTake)
{
    secrets.failWrites = true;
    keep("c1");
    EXPECT_FALSE(await(ids.storeAgain()));
    secrets.failWrites = false;
    EXPECT_TRUE(await(ids.storeAgain()));
    EXPECT_EQ(secrets.values[key], "c1");
    secrets.values.clear();
    EXPECT_TRUE(await(ids.storeAgain()));
    EXPECT_TRUE(secrets.values.empty());
}

TEST_F(ClientIDStoreTest, CannotTellWhileTheStoreIsLockedSilentOrAway)
{
    secrets.values[key] = "c1";
    for (const Why why : {Why::locked, Why::notAnswering, Why::noService}) {
        secrets.unavailable = SecretsUnavailable{why};
        EXPECT_EQ(found(), Found(std::unexpect, SecretsUnavailable{why}));
    }
    secrets.unavailable.reset();
    EXPECT_EQ(found(), "c1");
}

TEST_F(ClientIDStoreTest, RemembersWhatItFoundWhenTheStoreGoesAway)
{
    secrets.values[key] = "c1";
    EXPECT_EQ(found(), "c1");
    secrets.unavailable = SecretsUnavailable{Why::noService};
    EXPECT_EQ(found(), "c1");
    forget();
    EXPECT_EQ(found(), Found(std::unexpect, SecretsUnavailable{Why::noService}));
    secrets.unavailable.reset();
    keep("c2");
    secrets.unavailable = SecretsUnavailable{Why::noService};
    EXPECT_EQ(found(), "c2");
}

TEST_F(ClientIDStoreTest, ForgetsStoredAndUnstoredIdsAlike)
{
    keep("c1");
    forget();
    EXPECT_EQ(found(), Found{std::nullopt});
    EXPECT_TRUE(secrets.values.empty());

    secrets.failWrites = true;
    keep("c2");
    forget();
    EXPECT_EQ(found(), Found{std::nullopt});
}

TEST_F(ClientIDStoreTest, PrefersTheNewerIdOverAnOlderOneThatIsStored)
{
    keep("c1");
    secrets.failWrites = true;
    keep("c2");
    EXPECT_EQ(found(), "c2");
    secrets.failWrites = false;
    keep("c3");
    EXPECT_EQ(found(), "c3");
    EXPECT_EQ(secrets.values[key], "c3");
}

} // namespace roost::test
