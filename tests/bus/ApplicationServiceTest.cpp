#include "bus/ApplicationService.h"

#include "bus/Handover.h"
#include "tests/bus/BusPeer.h"
#include "tests/support/Poll.h"
#include "tests/support/PrivateBus.h"

#include <gmock/gmock.h>

#include <QDeadlineTimer>

#include <thread>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using Kind = ApplicationService::Claim::Kind;
using testing::ElementsAre;
using testing::IsEmpty;

const QString open = QStringLiteral("Open");
const QStringList uris{QStringLiteral("briskenroost://callback?code=1&state=2"), QStringLiteral("b")};

/// A service on a private bus, which takes every address or none.
struct Program {
    PrivateBus& bus;
    bool isWaiting = true;
    std::vector<QStringList> opened;
    ApplicationService service{bus.address(), [this](const QStringList& addresses) {
                                   opened.push_back(addresses);
                                   return isWaiting;
                               }};
};

TEST(ApplicationService, TakesTheNameThatIsFree)
{
    PrivateBus bus;
    Program program{bus};
    const auto claim = await(program.service.start(guardTime));
    EXPECT_EQ(claim.kind, Kind::owned);
    EXPECT_EQ(claim.owner, BusPeer(bus.address()).ownerOfName());
}

TEST(ApplicationService, GivesTheAddressesThatAreOpened)
{
    PrivateBus bus;
    Program program{bus};
    await(program.service.start(guardTime));
    const QVariantMap platformData{{QStringLiteral("desktop-startup-id"), QStringLiteral("x")}};
    const QDBusMessage answer = BusPeer(bus.address()).call(open, {uris, platformData});
    EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage) << answer.errorMessage().toStdString();
    EXPECT_THAT(program.opened, ElementsAre(uris));
}

TEST(ApplicationService, TellsTheCallerThatNobodyWaits)
{
    PrivateBus bus;
    Program program{bus, false};
    await(program.service.start(guardTime));
    const QDBusMessage answer = BusPeer(bus.address()).call(open, {uris, QVariantMap{}});
    EXPECT_EQ(answer.errorName(), RoostBus::notAwaited);
    EXPECT_FALSE(answer.errorMessage().contains(QLatin1String("code"))) << "nothing of the address";
    EXPECT_THAT(program.opened, ElementsAre(uris));
}

TEST(ApplicationService, DoesNotLookAtTooManyOrTooLongAddresses)
{
    PrivateBus bus;
    Program program{bus};
    await(program.service.start(guardTime));
    const BusPeer peer(bus.address());
    const QStringList many(ApplicationAdaptor::mostAddresses + 1, QStringLiteral("a"));
    const QStringList longOne{QString(longestCallback + 1, QLatin1Char('a'))};
    EXPECT_EQ(peer.call(open, {many, QVariantMap{}}).errorName(), RoostBus::notAwaited);
    EXPECT_EQ(peer.call(open, {longOne, QVariantMap{}}).errorName(), RoostBus::notAwaited);
    EXPECT_THAT(program.opened, IsEmpty());
}

TEST(ApplicationService, AnswersTheRestOfTheStandardInterface)
{
    PrivateBus bus;
    Program program{bus};
    await(program.service.start(guardTime));
    const BusPeer peer(bus.address());
    EXPECT_EQ(peer.call(QStringLiteral("Activate"), {QVariantMap{}}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(
        peer.call(QStringLiteral("ActivateAction"), {QStringLiteral("x"), QVariantList{}, QVariantMap{}})
            .type(),
        QDBusMessage::ReplyMessage);
    EXPECT_EQ(peer.call(QStringLiteral("Explode"), {}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(peer.call(open, {QStringLiteral("wrong signature")}).type(), QDBusMessage::ErrorMessage);
    EXPECT_THAT(program.opened, IsEmpty());
}

TEST(ApplicationService, IsFurnishedBeforeItHasTheName)
{
    PrivateBus bus;
    const BusPeer peer(bus.address());
    QString ownerThen = QStringLiteral("nobody looked");
    ApplicationService service{bus.address(), [](const QStringList&) { return false; },
                               [&](const QDBusConnection& connection) {
                                   EXPECT_TRUE(connection.isConnected());
                                   ownerThen = peer.ownerOfName();
                               }};
    EXPECT_EQ(await(service.start(guardTime)).kind, Kind::owned);
    EXPECT_EQ(ownerThen, QString{});
    EXPECT_NE(peer.ownerOfName(), QString{});
}

TEST(ApplicationService, SaysWhoHasTheNameAndDoesNotQueueForIt)
{
    PrivateBus bus;
    const BusPeer stranger(bus.address());
    ASSERT_EQ(stranger.takeName(), 1U);
    Program program{bus};
    const auto claim = await(program.service.start(guardTime));
    EXPECT_EQ(claim, (ApplicationService::Claim{Kind::taken, stranger.uniqueName()}));
    stranger.leaveName();
    EXPECT_EQ(stranger.ownerOfName(), QString{});
}

TEST(ApplicationService, DrivesNobodyOutAndIsNotDrivenOut)
{
    PrivateBus bus;
    constexpr uint allowReplacement = 1;
    constexpr uint replaceExistingWithoutQueue = 2 + 4;
    const BusPeer stranger(bus.address());
    ASSERT_EQ(stranger.takeName(allowReplacement), 1U);
    Program late{bus};
    EXPECT_EQ(await(late.service.start(guardTime)).kind, Kind::taken);
    stranger.leaveName();

    Program program{bus};
    const auto claim = await(program.service.start(guardTime));
    ASSERT_EQ(claim.kind, Kind::owned);
    EXPECT_EQ(stranger.takeName(replaceExistingWithoutQueue), 3U) << "the name exists";
    EXPECT_EQ(stranger.ownerOfName(), claim.owner);
}

TEST(ApplicationService, LeavesTheNameWhenItGoes)
{
    PrivateBus bus;
    auto program = std::make_unique<Program>(bus);
    ASSERT_EQ(await(program->service.start(guardTime)).kind, Kind::owned);
    program.reset();
    const BusPeer peer(bus.address());
    const QDeadlineTimer guard(guardTime);
    while (!peer.ownerOfName().isEmpty() && !guard.hasExpired()) {
    }
    EXPECT_EQ(peer.ownerOfName(), QString{});
}

TEST(ApplicationService, SurvivesThatTheBusGoesAway)
{
    PrivateBus bus;
    Program program{bus};
    ASSERT_EQ(await(program.service.start(guardTime)).kind, Kind::owned);
    const BusPeer onlooker(bus.address());
    bus.end();
    // The end is noticed on a thread of the bus library, which wakes no loop.
    poll("the bus goes away", [&] {
        QCoreApplication::processEvents();
        return !onlooker.connection().isConnected();
    });
}

TEST(ApplicationService, GoesWithoutABus)
{
    PrivateBus frozen;
    frozen.freeze();
    for (const QString& address : {QString{}, QStringLiteral("unix:path=/nowhere"), frozen.address()}) {
        ApplicationService service{address, [](const QStringList&) { return true; }};
        EXPECT_EQ(await(service.start(200ms)), ApplicationService::Claim{});
    }
    frozen.thaw();
}

TEST(ApplicationService, GivesUpOnABusThatFreezesOnTheWay)
{
    PrivateBus bus;
    Program program{bus};
    ASSERT_EQ(await(program.service.start(guardTime)).kind, Kind::owned);
    const BusPeer peer(bus.address());
    bus.freeze();
    const QDBusMessage answer = await(callBusDaemon(peer.connection(), QStringLiteral("GetId"), {}, 100ms));
    EXPECT_EQ(answer.type(), QDBusMessage::ErrorMessage);
    bus.thaw();
}

TEST(ApplicationService, WaitsForNoBusAfterAStop)
{
    PrivateBus bus;
    bus.freeze();
    Program program{bus};
    std::stop_source stop;
    Pending starting(program.service.start(guardTime, stop.get_token()));
    EXPECT_FALSE(starting.isDone());
    std::thread([&stop] { stop.request_stop(); }).join();
    EXPECT_EQ(starting.get(20s), ApplicationService::Claim{});
    Program late{bus};
    EXPECT_EQ(await(late.service.start(guardTime, stop.get_token()), 20s), ApplicationService::Claim{});
    bus.thaw();
}

TEST(ApplicationService, WaitsForNoAnswerOfTheBusAfterAStop)
{
    PrivateBus bus;
    const BusPeer peer(bus.address());
    bus.freeze();
    std::stop_source stop;
    Pending asking(
        callBusDaemon(peer.connection(), QStringLiteral("GetId"), {}, guardTime, stop.get_token()));
    EXPECT_FALSE(asking.isDone());
    std::thread([&stop] { stop.request_stop(); }).join();
    EXPECT_EQ(asking.get(20s).type(), QDBusMessage::InvalidMessage);
    bus.thaw();
}

} // namespace
} // namespace roost::test
