#include "platform/KeyringWatch.h"

#include "tests/support/PrivateBus.h"
#include "tests/support/PrivateKeyring.h"
#include "tests/support/RunUntil.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusObjectPath>

#include <memory>

namespace roost::test {
namespace {

class KeyringWatchTest : public testing::Test {
protected:
    bool isHeard()
    {
        return runUntil([this] { return heard > 0; });
    }

    /// Everything that was said so far has been heard.
    void catchUp() const
    {
        // The answer comes after all of that, and is waited for.
        EXPECT_FALSE(bus.hasName(QStringLiteral("nobody.has.this")));
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }

    PrivateBus bus;
    PrivateKeyring keyring{bus};
    int heard = 0;
    std::unique_ptr<KeyringWatch> watch =
        std::make_unique<KeyringWatch>(bus.connection(), [this] { ++heard; });
};

TEST_F(KeyringWatchTest, TellsWhenAKeyringComes)
{
    keyring.startLocked();
    EXPECT_TRUE(isHeard());
}

TEST_F(KeyringWatchTest, TellsWhenAKeyringSaysThatACollectionWasMadeOrHasChanged)
{
    const QString name = QStringLiteral("a keyring");
    QDBusConnection other = QDBusConnection::connectToBus(bus.address(), name);
    for (const QString& member : {QStringLiteral("CollectionCreated"), QStringLiteral("CollectionChanged")}) {
        heard = 0;
        QDBusMessage signal =
            QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/secrets"),
                                       QStringLiteral("org.freedesktop.Secret.Service"), member);
        signal.setArguments({QVariant::fromValue(QDBusObjectPath{PrivateKeyring::defaultPath()})});
        ASSERT_TRUE(other.send(signal));
        EXPECT_TRUE(isHeard()) << member.toStdString();
    }
    QDBusConnection::disconnectFromBus(name);
}

TEST_F(KeyringWatchTest, TellsWhenAKeyringIsOpened)
{
    keyring.startUnlocked();
    keyring.lock();
    catchUp();
    heard = 0;
    keyring.unlock();
    EXPECT_TRUE(isHeard());
}

TEST_F(KeyringWatchTest, IsSilentWhenAKeyringGoesAndWhenItIsGoneItself)
{
    keyring.startUnlocked();
    catchUp();
    heard = 0;
    keyring.end();
    catchUp();
    EXPECT_EQ(heard, 0);

    watch.reset();
    keyring.startUnlocked();
    catchUp();
    EXPECT_EQ(heard, 0);
}

TEST_F(KeyringWatchTest, MayBeLetGoByWhoHearsIt)
{
    watch = std::make_unique<KeyringWatch>(bus.connection(), [this] {
        watch.reset();
        ++heard;
    });
    keyring.startUnlocked();
    EXPECT_TRUE(runUntil([this] { return heard == 1; }));
}

} // namespace
} // namespace roost::test
