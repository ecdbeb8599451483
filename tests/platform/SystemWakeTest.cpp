#include "platform/SystemWake.h"

#include "tests/bus/BusPeer.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/RunUntil.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;

/// Says that the machine goes to sleep or has woken up.
void tell(const BusPeer& peer, bool isAboutToSleep)
{
    QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/login1"),
                                                     QStringLiteral("org.freedesktop.login1.Manager"),
                                                     QStringLiteral("PrepareForSleep"));
    signal.setArguments({isAboutToSleep});
    peer.connection().send(signal);
}

class SystemWakeTest : public testing::Test {
protected:
    /// A peer that has the name of logind.
    BusPeer logind() const
    {
        BusPeer peer{bus.address()};
        peer.ask(QStringLiteral("RequestName"),
                 {QStringLiteral("org.freedesktop.login1"), QVariant::fromValue(4U)});
        return peer;
    }

    /// Sends it until it is heard, since nobody tells when somebody began to listen.
    bool isHeard(const BusPeer& from)
    {
        for (int attempts = 0; attempts < 300 && woken == 0; ++attempts) {
            tell(from, false);
            static_cast<void>(runUntil([this] { return woken > 0; }, 100ms));
        }
        return woken > 0;
    }

    PrivateBus bus;
    int woken = 0;
    std::function<void()> wake = [this] { ++woken; };
};

TEST_F(SystemWakeTest, TellsWhenTheMachineHasWokenUp)
{
    const BusPeer peer = logind();
    const SystemWake events{bus.address(), wake};

    EXPECT_TRUE(isHeard(peer));
}

TEST_F(SystemWakeTest, TellsNothingWhenItGoesToSleep)
{
    const BusPeer peer = logind();
    const SystemWake events{bus.address(), wake};
    ASSERT_TRUE(isHeard(peer));
    static_cast<void>(runUntil([] { return false; }, 300ms));
    const int before = woken;
    tell(peer, true);
    static_cast<void>(runUntil([] { return false; }, 300ms));
    EXPECT_EQ(woken, before);

    tell(peer, false);
    EXPECT_TRUE(runUntil([&] { return woken == before + 1; }));
}

TEST_F(SystemWakeTest, BelievesNobodyButLogind)
{
    const BusPeer peer = logind();
    const BusPeer liar{bus.address()};
    const SystemWake events{bus.address(), wake};
    ASSERT_TRUE(isHeard(peer));
    static_cast<void>(runUntil([] { return false; }, 300ms));
    const int before = woken;
    tell(liar, false);
    tell(liar, false);
    // The answers about the liar come before the one about this.
    tell(peer, false);
    ASSERT_TRUE(runUntil([&] { return woken > before; }));
    static_cast<void>(runUntil([] { return false; }, 300ms));
    EXPECT_EQ(woken, before + 1);
}

TEST_F(SystemWakeTest, HearsALogindThatStartsLater)
{
    const SystemWake events{bus.address(), wake};
    const BusPeer peer = logind();

    EXPECT_TRUE(isHeard(peer));
}

TEST_F(SystemWakeTest, IsQuietWithoutABus)
{
    const SystemWake events{QStringLiteral("unix:path=/nonexistent/bus"), wake};
    static_cast<void>(runUntil([] { return false; }, 100ms));

    EXPECT_EQ(woken, 0);
}

TEST_F(SystemWakeTest, MayGoBeforeTheBusAnswers)
{
    bus.freeze();
    auto events = std::make_unique<SystemWake>(bus.address(), wake);
    static_cast<void>(runUntil([] { return false; }, 50ms));
    events.reset();
    bus.thaw();
    static_cast<void>(runUntil([] { return false; }, 300ms));

    EXPECT_EQ(woken, 0);
}

TEST(SystemBus, IsWhereTheEnvironmentOrTheSpecificationSays)
{
    QProcessEnvironment environment;
    EXPECT_EQ(systemBusAddresses(environment), QStringLiteral("unix:path=/var/run/dbus/system_bus_socket"));
    environment.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), QStringLiteral("unix:path=/x"));
    EXPECT_EQ(systemBusAddresses(environment), QStringLiteral("unix:path=/x"));
}

} // namespace
} // namespace roost::test
