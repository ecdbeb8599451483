#include "platform/KeyringSession.h"

#include "platform/KeychainSecretStore.h"
#include "tests/platform/SecretServiceStandIn.h"
#include "tests/support/Await.h"
#include "tests/support/PrivateKeyring.h"

#include <gmock/gmock.h>

#include <QLocalServer>

namespace roost::test {

namespace {

using Collection = SecretServiceStandIn::Collection;
using Why = SecretsUnavailable::Why;

constexpr KeychainSecretStore::Patience patient{.service = guardTime};

using Found = std::expected<std::optional<std::string>, SecretsUnavailable>;

Found found(const std::optional<QByteArray>& address)
{
    const ScopedVariable session{"DBUS_SESSION_BUS_ADDRESS", address};
    KeychainSecretStore store{"service", patient};
    return await(store.get("key"));
}

Found unavailable(Why why) { return std::unexpected(SecretsUnavailable{why}); }

} // namespace

TEST(KeyringSession, StartsNoBusWhereThereIsNone)
{
    const PrivateBus bus;
    const std::filesystem::path launcher = bus.home() / "dbus-launch";
    const std::filesystem::path started = bus.home() / "started";
    putBytes(launcher, "#!/bin/sh\n: >'" + started.string() + "'\n");
    std::filesystem::permissions(launcher, std::filesystem::perms::owner_all);
    const ScopedVariable display{"DISPLAY", ":999"};
    const ScopedVariable path{"PATH", QByteArray::fromStdString(bus.home().string()) + ":" + qgetenv("PATH")};

    for (const auto& address : {std::optional<QByteArray>{}, std::optional<QByteArray>{""},
                                std::optional<QByteArray>{"autolaunch:"}}) {
        EXPECT_EQ(found(address), unavailable(Why::noService));
        EXPECT_FALSE(std::filesystem::exists(started)) << address.value_or("unset").constData();
    }
}

TEST(KeyringSession, FindsTheBusOfTheUserWhereTheSessionNamesNone)
{
    const PrivateBus bus;
    PrivateKeyring keyring{bus};
    keyring.startUnlocked();
    const ScopedVariable runtime{"XDG_RUNTIME_DIR", QByteArray::fromStdString(bus.home().string())};

    EXPECT_EQ(found(std::nullopt), Found{});
}

TEST(KeyringSession, TriesTheAddressesOfTheBusInOrder)
{
    const PrivateBus bus;
    PrivateKeyring keyring{bus};
    keyring.startUnlocked();

    EXPECT_EQ(found("unix:path=/nonexistent/bus;" + bus.address().toLatin1()), Found{});
}

TEST(KeyringSession, TellsABusThatIsNotThereFromOneThatCannotBeReached)
{
    const PrivateBus bus;
    const QByteArray dead = QByteArray::fromStdString((bus.home() / "dead").string());
    QLocalServer server;
    ASSERT_TRUE(server.listen(QString::fromLatin1(dead)));
    std::filesystem::rename(dead.toStdString(), dead.toStdString() + " socket");
    server.close();

    EXPECT_EQ(found("unix:path=" + dead), unavailable(Why::noService));
    EXPECT_EQ(found("unix:path=/dev/null/bus"), unavailable(Why::noService));
    EXPECT_EQ(found("unix:abstract=" + dead), unavailable(Why::noService)) << "nobody has that name";
    EXPECT_EQ(found("unix:path=" + dead + "%20socket"), unavailable(Why::notAnswering)) << "it refuses";
    EXPECT_EQ(found("unix:path=" + dead + "%20socket;unix:path=/nonexistent/bus"),
              unavailable(Why::notAnswering));
}

TEST(KeyringSession, BelievesNoEmptyAnswerOfAServiceThatAnotherReplaces)
{
    const PrivateBus bus;
    SecretServiceStandIn locked{bus, Collection::locked};
    SecretServiceStandIn open{bus, Collection::open, SecretServiceStandIn::Name::left};
    locked.onceAfter(QStringLiteral("ReadAlias"), [&] {
        locked.leaveName();
        open.takeName();
    });
    KeychainSecretStore store{"service", patient};

    EXPECT_EQ(await(store.get("key")), unavailable(Why::locked));
    EXPECT_EQ(await(store.get("key")), Found{}) << "the other one is asked next";
}

TEST(KeyringSession, BelievesNoEmptyAnswerOfAKeyringThatIsLockedMeanwhile)
{
    const PrivateBus bus;
    SecretServiceStandIn service{bus, Collection::open};
    service.onceAfter(QStringLiteral("Get"), [&] { service.lock(); });
    KeychainSecretStore store{"service", patient};

    EXPECT_EQ(await(store.get("key")), unavailable(Why::locked));
}

TEST(KeyringSession, TakesAServiceThatLeavesMeanwhileForOneThatDoesNotAnswer)
{
    const PrivateBus bus;
    for (const char* last : {"ReadAlias", "Get"}) {
        SecretServiceStandIn service{bus, Collection::open};
        service.onceAfter(QString::fromLatin1(last), [&] { service.leaveBus(); });
        KeychainSecretStore store{"service", patient};

        EXPECT_EQ(await(store.get("key")), unavailable(Why::notAnswering)) << last;
        EXPECT_EQ(await(store.get("key")), unavailable(Why::noService));
    }
}

} // namespace roost::test
