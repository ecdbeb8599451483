#include "bus/SessionBus.h"

#include "tests/support/Await.h"
#include "tests/support/Poll.h"
#include "tests/support/PrivateBus.h"

#include <gmock/gmock.h>

#include <QTimer>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

QProcessEnvironment environmentOf(const QHash<QString, QString>& variables)
{
    QProcessEnvironment environment;
    for (auto variable = variables.begin(); variable != variables.end(); ++variable) {
        environment.insert(variable.key(), variable.value());
    }
    return environment;
}

const QString busAddress = QStringLiteral("DBUS_SESSION_BUS_ADDRESS");
const QString runtime = QStringLiteral("XDG_RUNTIME_DIR");

TEST(SessionBusAddresses, AreThoseOfTheSession)
{
    EXPECT_EQ(sessionBusAddresses(environmentOf(
                  {{busAddress, QStringLiteral("unix:path=/a")}, {runtime, QStringLiteral("/run/b")}})),
              QStringLiteral("unix:path=/a"));
}

TEST(SessionBusAddresses, AreTheSocketOfTheUserWhereTheSessionNamesNone)
{
    const QString addresses =
        sessionBusAddresses(environmentOf({{runtime, QStringLiteral("/run/user, 1;2/Köln")}}));
    EXPECT_THAT(busSocketsIn(addresses),
                ElementsAre(BusSocket{QStringLiteral("/run/user, 1;2/Köln/bus"), true, addresses}));
}

TEST(SessionBusAddresses, AreNoneWithoutASession)
{
    EXPECT_EQ(sessionBusAddresses({}), QString{});
    EXPECT_EQ(sessionBusAddresses(environmentOf({{runtime, QStringLiteral("relative")}})), QString{});
}

TEST(BusSockets, AreTheUnixOnesInOrder)
{
    EXPECT_THAT(
        busSocketsIn(QStringLiteral("tcp:host=a,port=1;unix:path=/x%20y,guid=12;autolaunch:;"
                                    "unix:guid=7,abstract=/tmp/z;unix:dir=/tmp;;unix:path;unixexec:x")),
        ElementsAre(
            BusSocket{QStringLiteral("/x y"), true, QStringLiteral("unix:path=/x%20y,guid=12")},
            BusSocket{QStringLiteral("/tmp/z"), false, QStringLiteral("unix:guid=7,abstract=/tmp/z")}));
    EXPECT_THAT(busSocketsIn({}), IsEmpty());
}

TEST(BusConnection, ConnectsToABusThatAnswers)
{
    const PrivateBus bus;
    const auto connection = await(BusConnection::open(bus.address(), guardTime));
    ASSERT_NE(connection, nullptr);
    EXPECT_TRUE(connection->get().isConnected());
}

TEST(BusConnection, TriesTheAddressesInOrder)
{
    const PrivateBus bus;
    EXPECT_NE(await(BusConnection::open(QStringLiteral("unix:path=/nowhere;") + bus.address(), guardTime)),
              nullptr);
}

TEST(BusConnection, IsNoneWithoutABus)
{
    EXPECT_EQ(await(BusConnection::open({}, guardTime)), nullptr);
    EXPECT_EQ(await(BusConnection::open(QStringLiteral("unix:path=/nowhere/bus"), guardTime)), nullptr);
}

TEST(BusConnection, IsNoneWhenTheBusDoesNotAnswerInTimeAndBlocksNothing)
{
    PrivateBus bus;
    bus.freeze();
    int turns = 0;
    QTimer turning;
    QObject::connect(&turning, &QTimer::timeout, &turning, [&turns] { ++turns; });
    turning.start(1ms);
    EXPECT_EQ(await(BusConnection::open(bus.address(), 300ms)), nullptr);
    EXPECT_GT(turns, 10);
    bus.thaw();
}

TEST(BusConnection, FailsItsCallsWhenTheBusHasGone)
{
    PrivateBus bus;
    const auto connection = await(BusConnection::open(bus.address(), guardTime));
    ASSERT_NE(connection, nullptr);
    bus.end();
    // The end is noticed on a thread of the bus library, which wakes no loop.
    poll("the connection ends", [&] { return !connection->get().isConnected(); });
}

} // namespace
} // namespace roost::test
