#include "platform/KeychainSecretStore.h"
#include "service/InMemorySecretStore.h"
#include "tests/support/Await.h"
#include "tests/support/PrivateKeyring.h"

#include <gmock/gmock.h>

namespace roost::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A store in good health, and a look at what is in it that does not go through it.
class Subject {
public:
    virtual ~Subject() = default;
    virtual SecretStore& store() = 0;
    virtual qsizetype itemsOf(const std::string& key) const = 0;
};

class InMemory final : public Subject {
public:
    SecretStore& store() override { return store_; }

    qsizetype itemsOf(const std::string& key) const override
    {
        return static_cast<qsizetype>(store_.values.count(key));
    }

private:
    InMemorySecretStore store_;
};

class Keychain final : public Subject {
public:
    Keychain() { keyring_.startUnlocked(); }

    SecretStore& store() override { return store_; }

    qsizetype itemsOf(const std::string& key) const override
    {
        const PrivateKeyring::Items items =
            keyring_.itemsWith({{QStringLiteral("service"), QStringLiteral("world.brisken.roost.mac")},
                                {QStringLiteral("account"), QString::fromStdString(key)}});
        return items.unlocked + items.locked;
    }

private:
    PrivateBus bus_;
    PrivateKeyring keyring_{bus_};
    KeychainSecretStore store_{"world.brisken.roost.mac", {.service = guardTime}};
};

struct Kind {
    const char* name;
    std::unique_ptr<Subject> (*make)();
};

void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

class SecretStoreContract : public testing::TestWithParam<Kind> {
protected:
    SecretStore& store() { return subject_->store(); }
    const Subject& subject() const { return *subject_; }

    std::optional<std::string> valueOf(const std::string& key) { return await(store().get(key)).value(); }

private:
    std::unique_ptr<Subject> subject_ = GetParam().make();
};

template <class T>
std::unique_ptr<Subject> make()
{
    return std::make_unique<T>();
}

INSTANTIATE_TEST_SUITE_P(Every, SecretStoreContract,
                         testing::Values(Kind{"InMemory", make<InMemory>}, Kind{"Keychain", make<Keychain>}),
                         [](const auto& kind) { return std::string{kind.param.name}; });

} // namespace

TEST_P(SecretStoreContract, GivesBackEveryTextAsItWas)
{
    const std::vector<std::string> texts{"plain",
                                         "",
                                         "Café Morgenröte → 投稿 🎉",
                                         R"(with "double" and 'single' quotes and \ backslashes)",
                                         "two\nlines\tand a tab",
                                         " blanks at both ends ",
                                         std::string("a zero \0 byte", 13),
                                         std::string(20000, 'x')};
    for (const std::string& text : texts) {
        ASSERT_TRUE(await(store().set(text, "key")));
        EXPECT_EQ(valueOf("key"), text);
    }
}

TEST_P(SecretStoreContract, TakesEveryTextForAKey)
{
    const std::vector<std::string> keys{"",
                                        "client-id|https://api.example.com/%7Euser?a=b&c=\"d\"",
                                        "refresh-token|Zürich 🎉",
                                        "refresh-token|it's",
                                        "refresh-token|",
                                        "REFRESH-TOKEN|"};
    for (const std::string& key : keys) {
        ASSERT_TRUE(await(store().set("value of " + key, key)));
    }
    for (const std::string& key : keys) {
        EXPECT_EQ(valueOf(key), "value of " + key);
        EXPECT_EQ(subject().itemsOf(key), 1);
    }
    EXPECT_EQ(await(store().keys("")).value().size(), keys.size());
}

TEST_P(SecretStoreContract, HoldsOneItemPerKeyAfterTwoSets)
{
    ASSERT_TRUE(await(store().set("first", "refresh-token|a")));
    ASSERT_TRUE(await(store().set("second", "refresh-token|a")));

    EXPECT_EQ(valueOf("refresh-token|a"), "second");
    EXPECT_EQ(subject().itemsOf("refresh-token|a"), 1);
    EXPECT_THAT(await(store().keys("")).value(), ElementsAre("refresh-token|a"));
}

TEST_P(SecretStoreContract, SaysWhatItContains)
{
    ASSERT_TRUE(await(store().set("value", "here")));

    EXPECT_EQ(await(store().contains("here")), true);
    EXPECT_EQ(await(store().contains("her")), false);
    EXPECT_EQ(await(store().contains("here ")), false);
    EXPECT_EQ(valueOf("gone"), std::nullopt);
}

TEST_P(SecretStoreContract, ListsTheKeysWithAPrefixInOrder)
{
    ASSERT_TRUE(await(store().set("1", "refresh-token|b")));
    ASSERT_TRUE(await(store().set("2", "client-id|https://api.example.com")));
    ASSERT_TRUE(await(store().set("3", "refresh-token|a")));
    ASSERT_TRUE(await(store().set("4", "refresh-token|B")));

    EXPECT_THAT(await(store().keys("refresh-token|")).value(),
                ElementsAre("refresh-token|B", "refresh-token|a", "refresh-token|b"));
    EXPECT_THAT(await(store().keys("token")).value(), IsEmpty());
}

TEST_P(SecretStoreContract, RemovesOneItemAndNoOther)
{
    ASSERT_TRUE(await(store().set("1", "refresh-token|a")));
    ASSERT_TRUE(await(store().set("2", "refresh-token|b")));

    EXPECT_TRUE(await(store().remove("refresh-token|a")));

    EXPECT_EQ(valueOf("refresh-token|a"), std::nullopt);
    EXPECT_EQ(subject().itemsOf("refresh-token|a"), 0);
    EXPECT_EQ(valueOf("refresh-token|b"), "2");
}

TEST_P(SecretStoreContract, TakesTheRemovalOfAMissingKeyForDone)
{
    EXPECT_TRUE(await(store().remove("never there")));
    EXPECT_THAT(await(store().keys("")).value(), IsEmpty());
}

TEST_P(SecretStoreContract, CarriesOutTheCallsForOneKeyInTheirOrder)
{
    Pending first{store().set("first", "key")};
    Pending readFirst{store().get("key")};
    Pending second{store().set("second", "key")};
    Pending readSecond{store().get("key")};
    Pending removal{store().remove("key")};
    Pending readNone{store().get("key")};
    Pending third{store().set("third", "key")};

    EXPECT_TRUE(third.get());
    EXPECT_EQ(readFirst.get().value(), std::optional<std::string>("first"));
    EXPECT_EQ(readSecond.get().value(), std::optional<std::string>("second"));
    EXPECT_EQ(readNone.get().value(), std::optional<std::string>());
    EXPECT_EQ(valueOf("key"), "third");
}

TEST_P(SecretStoreContract, ServesManyCallsAtOnce)
{
    constexpr int count = 60;
    std::vector<std::unique_ptr<Pending<std::expected<void, KeychainError>>>> sets;
    for (int i = 0; i < count; ++i) {
        const std::string key = "key " + std::to_string(i % 20);
        sets.push_back(std::make_unique<Pending<std::expected<void, KeychainError>>>(
            store().set("value " + std::to_string(i), key)));
    }
    for (const auto& set : sets) {
        ASSERT_TRUE(set->get());
    }
    EXPECT_EQ(await(store().keys("key ")).value().size(), 20U);
    EXPECT_EQ(valueOf("key 0"), "value 40");
    EXPECT_EQ(valueOf("key 19"), "value 59");
}

TEST_P(SecretStoreContract, IsOpenWithoutAskingWhenItIsUnlocked) { EXPECT_TRUE(await(store().unlock())); }

} // namespace roost::test
