#include "tests/support/PrivateKeyring.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/Poll.h"

#include <gmock/gmock.h>

#include <QDBusConnectionInterface>

#include <csignal>

namespace roost::test {

namespace {

const QMap<QString, QString> attributes{{QStringLiteral("name"), QStringLiteral("value")}};

bool isAlive(pid_t pid) { return ::kill(pid, 0) == 0; }

} // namespace

TEST(PrivateKeyring, KeepsItsItemsThroughLockAndRestart)
{
    const PrivateBus bus;
    PrivateKeyring keyring{bus};
    keyring.startUnlocked();
    keyring.putItem(PrivateKeyring::defaultPath(), attributes, "secret");
    EXPECT_EQ(keyring.itemsWith(attributes), (PrivateKeyring::Items{.unlocked = 1}));

    keyring.lock();
    EXPECT_EQ(keyring.itemsWith(attributes), (PrivateKeyring::Items{.locked = 1}));
    keyring.unlock();
    keyring.end();
    keyring.startLocked();
    EXPECT_EQ(keyring.itemsWith(attributes).unlocked, 0);
    keyring.end();
    keyring.startUnlocked();
    EXPECT_EQ(keyring.itemsWith(attributes), (PrivateKeyring::Items{.unlocked = 1}));
}

TEST(PrivateKeyring, LeavesNothingBehindWhenItsTestIsKilled)
{
    pid_t program = 0;
    {
        ChildProcess child{[](const ChildProcess::Voice& voice) {
            GuardedProcess deep{{"sh", "-c", "setsid sleep 1000 & echo $!; kill -STOP $$"}};
            voice.say(deep.line() + "\n");
            ::pause();
        }};
        program = static_cast<pid_t>(std::stol(child.line()));
        EXPECT_TRUE(isAlive(program));
    } // killed
    poll("the program's own child is gone", [program] { return !isAlive(program); });
}

TEST(PrivateKeyring, IsStartedByABusWithTheInstalledServices)
{
    const PrivateBus bus{PrivateBus::Activation::installed};
    const auto started =
        bus.connection().interface()->startService(QStringLiteral("org.freedesktop.secrets"));
    EXPECT_TRUE(started.isValid()) << started.error().message().toStdString();

    const PrivateKeyring keyring{bus};
    EXPECT_EQ(keyring.itemsWith(attributes), PrivateKeyring::Items{});
}

} // namespace roost::test
