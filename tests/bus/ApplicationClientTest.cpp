#include "bus/ApplicationClient.h"

#include "bus/ApplicationService.h"
#include "tests/bus/BusPeer.h"
#include "tests/support/PrivateBus.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

const QStringList uris{QStringLiteral("briskenroost://callback?code=1&state=2")};

TEST(OpenOnBus, HandsTheAddressToWhoHasTheName)
{
    PrivateBus bus;
    std::vector<QStringList> opened;
    ApplicationService service{bus.address(), [&opened](const QStringList& addresses) {
                                   opened.push_back(addresses);
                                   return true;
                               }};
    await(service.start(guardTime));
    EXPECT_EQ(await(openOnBus(bus.address(), uris, guardTime)), Handover::taken);
    EXPECT_THAT(opened, ElementsAre(uris));
}

TEST(OpenOnBus, SaysThatTheAddressWasNotWaitedFor)
{
    PrivateBus bus;
    ApplicationService service{bus.address(), [](const QStringList&) { return false; }};
    await(service.start(guardTime));
    EXPECT_EQ(await(openOnBus(bus.address(), uris, guardTime)), Handover::declined);
}

TEST(OpenOnBus, FindsNobody)
{
    PrivateBus bus;
    EXPECT_EQ(await(openOnBus(bus.address(), uris, guardTime)), Handover::nobody);
}

TEST(OpenOnBus, FindsNoBus)
{
    EXPECT_EQ(await(openOnBus({}, uris, guardTime)), Handover::noWay);
    PrivateBus bus;
    bus.freeze();
    EXPECT_EQ(await(openOnBus(bus.address(), uris, 200ms)), Handover::noWay);
    bus.thaw();
}

TEST(OpenOnBus, DoesNotWaitForASilentOwner)
{
    PrivateBus bus;
    const BusPeer stranger(bus.address());
    ASSERT_EQ(stranger.takeName(), 1U);
    int calls = 0;
    const CallCatcher silent(stranger.connection(),
                             [&calls](const QDBusMessage& message, const QDBusConnection&) {
                                 message.setDelayedReply(true);
                                 ++calls;
                             });
    EXPECT_EQ(await(openOnBus(bus.address(), uris, 300ms)), Handover::declined);
    EXPECT_EQ(calls, 1);
}

TEST(OpenOnBus, TakesAnOwnerWithoutTheInterfaceForOneThatDeclines)
{
    PrivateBus bus;
    const BusPeer stranger(bus.address());
    ASSERT_EQ(stranger.takeName(), 1U);
    EXPECT_EQ(await(openOnBus(bus.address(), uris, guardTime)), Handover::declined);
}

TEST(ActivateOnBus, CallsWhoHasTheName)
{
    PrivateBus bus;
    EXPECT_EQ(await(activateOnBus(bus.address(), guardTime)), Handover::nobody);
    const BusPeer owner(bus.address());
    ASSERT_EQ(owner.takeName(), 1U);
    std::vector<QString> calls;
    const CallCatcher catcher(
        owner.connection(), [&calls](const QDBusMessage& message, const QDBusConnection& connection) {
            calls.push_back(message.interface() + u'.' + message.member() + message.signature());
            connection.send(message.createReply());
        });
    EXPECT_EQ(await(activateOnBus(bus.address(), guardTime)), Handover::taken);
    EXPECT_THAT(calls, ElementsAre(QStringLiteral("org.freedesktop.Application.Activatea{sv}")));
    EXPECT_EQ(await(activateOnBus({}, guardTime)), Handover::noWay);
}

TEST(OpenOnBus, SpeaksTheStandardInterface)
{
    PrivateBus bus;
    const BusPeer owner(bus.address());
    ASSERT_EQ(owner.takeName(), 1U);
    QString interface;
    QString signature;
    const CallCatcher catcher(owner.connection(),
                              [&](const QDBusMessage& message, const QDBusConnection& connection) {
                                  interface = message.interface();
                                  signature = message.signature();
                                  connection.send(message.createReply());
                              });
    EXPECT_EQ(await(openOnBus(bus.address(), uris, guardTime)), Handover::taken);
    EXPECT_EQ(interface, QStringLiteral("org.freedesktop.Application"));
    EXPECT_EQ(signature, QStringLiteral("asa{sv}"));
}

TEST(OpenOnBus, SurvivesThatTheBusGoesAwayMeanwhile)
{
    PrivateBus bus;
    const BusPeer stranger(bus.address());
    ASSERT_EQ(stranger.takeName(), 1U);
    const CallCatcher silent(stranger.connection(),
                             [&bus](const QDBusMessage& message, const QDBusConnection&) {
                                 message.setDelayedReply(true);
                                 bus.end();
                             });
    EXPECT_EQ(await(openOnBus(bus.address(), uris, guardTime)), Handover::noWay);
}

} // namespace
} // namespace roost::test
