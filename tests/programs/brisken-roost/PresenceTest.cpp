#include "programs/brisken-roost/Presence.h"

#include "model/RefreshSignal.h"
#include "model/RoostLog.h"
#include "tests/app/AppWorld.h"
#include "tests/bus/BusPeer.h"
#include "tests/platform/PollUntil.h"
#include "tests/support/PrivateBus.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <iterator>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

const QString word = QString::fromLatin1(RefreshSignal::notification);

QProcessEnvironment environmentHere()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), QStringLiteral("unix:path=/nowhere"));
    return environment;
}

class PresenceTest : public testing::Test {
protected:
    PresenceTest()
    {
        world.start();
        presence = std::make_unique<Presence>(environmentHere(), inbox, world.time.clock());
        presence->show(world.app(), [this] { ++quits; });
        presence->observe({.woke = [] {},
                           .refreshRequested = [this](Date at) { words.push_back(at); },
                           .secretsChanged = [this] { ++keyrings; }});
    }

    ~PresenceTest() override
    {
        await(presence->quit());
        presence.reset();
        world.quit();
    }

    void appear() { await(presence->appear()); }

    /// The bus library notices in its own time that a bus has gone.
    void appearOnTheNextBus()
    {
        ASSERT_TRUE(pollUntil([this] {
            presence->appear();
            return bus.hasName(RoostBus::name);
        }));
        appear();
    }
    void appearOnNoBus()
    {
        ASSERT_TRUE(pollUntil([this, before = said().size()] {
            presence->appear();
            return said().size() > before;
        }));
        appear();
    }

    QList<QString> said() const { return log.messages(RoostLog::sync().categoryName()); }

    /// Whether everything by which the program is found on the bus, and hears of it, works.
    testing::AssertionResult isThere()
    {
        const BusPeer peer(bus.lastingAddress());
        if (peer.callModel(QStringLiteral("Select"), {QStringLiteral("p1")}).type() !=
            QDBusMessage::ErrorMessage) {
            // There is no such profile, which only the model can know.
            return testing::AssertionFailure() << "the model took what it does not know";
        }
        if (peer.callModel(QStringLiteral("Get"),
                           {QStringLiteral("world.brisken.roost.mac.Model1"), QStringLiteral("IsRefreshing")},
                           RoostBus::propertiesInterface)
                .type() != QDBusMessage::ReplyMessage) {
            return testing::AssertionFailure() << "the model does not answer";
        }
        words.clear();
        CrossProcessNotification::post(peer.connection(), word, Date{1s});
        if (!runUntil([this] { return !words.empty(); })) {
            return testing::AssertionFailure() << "no word is heard";
        }
        keyrings = 0;
        peer.ask(QStringLiteral("RequestName"),
                 {QStringLiteral("org.freedesktop.secrets"), QVariant::fromValue(4U)});
        if (!runUntil([this] { return keyrings > 0; })) {
            return testing::AssertionFailure() << "no keyring is seen";
        }
        int callbacks = 0;
        inbox.expect({"briskenroost", "s", [&](const std::string&) {
                          ++callbacks;
                          return true;
                      }});
        const auto taken =
            await(handOverCallback(environmentHere(), "briskenroost://callback?code=c&state=s", guardTime));
        inbox.close();
        if (taken != Handover::taken || callbacks != 1) {
            return testing::AssertionFailure() << "no callback comes in";
        }
        return testing::AssertionSuccess();
    }

    LogCatcher log;
    AppWorld world;
    PrivateBus bus;
    CallbackInbox inbox{"briskenroost"};
    std::unique_ptr<Presence> presence;
    std::vector<Date> words;
    int keyrings = 0;
    int quits = 0;
};

TEST_F(PresenceTest, IsFoundOnTheBus)
{
    appear();
    EXPECT_TRUE(isThere());
    EXPECT_TRUE(presence->isReachable());
    EXPECT_THAT(said(), IsEmpty());
}

TEST_F(PresenceTest, ComesBackToABusThatWasRestarted)
{
    appear();
    bus.end();
    bus.startAgain();
    appearOnTheNextBus();
    EXPECT_TRUE(isThere());
    EXPECT_THAT(said(), IsEmpty());
}

TEST_F(PresenceTest, SaysOnceThatTheBusIsGoneAndOnceThatItIsBack)
{
    appear();
    bus.end();
    appearOnNoBus();
    appear();
    EXPECT_THAT(said(), ElementsAre(QStringLiteral("no session bus, going on without it")));
    // What it has to tell reaches nobody.
    presence->reloadAll();
    EXPECT_TRUE(presence->isReachable());

    bus.startAgain();
    appear();
    appear();
    EXPECT_TRUE(isThere());
    EXPECT_THAT(said(), ElementsAre(QStringLiteral("no session bus, going on without it"),
                                    QStringLiteral("on the session bus again")));
    EXPECT_EQ(quits, 0);
}

TEST_F(PresenceTest, TakesItsNameWhenThatIsFreeAtLast)
{
    auto other = std::make_unique<BusPeer>(bus.address());
    ASSERT_EQ(other->takeName(), 1U);
    appear();
    appear();
    EXPECT_THAT(said(),
                ElementsAre(QStringLiteral("another program has this one's name on the session bus")));
    EXPECT_NE(other->ownerOfName(), QString{});
    other->leaveName();
    appear();
    EXPECT_TRUE(isThere());
}

TEST_F(PresenceTest, AppearsOnceHoweverOftenItIsAsked)
{
    const Pending first{presence->appear()};
    const Pending second{presence->appear()};
    await(presence->appear());
    EXPECT_TRUE(runUntil([&] { return first.isDone(); }));
    EXPECT_TRUE(isThere());
}

TEST_F(PresenceTest, QuitsWhileItAppearsOnABusThatDoesNotAnswer)
{
    bus.freeze();
    const Pending appearing{presence->appear()};
    await(presence->quit());
    EXPECT_TRUE(appearing.isDone());
    EXPECT_THAT(said(), IsEmpty());
    bus.thaw();
}

TEST_F(PresenceTest, LeavesNothingBehindOnBusesThatAreGone)
{
    const auto descriptors = [] {
        return std::distance(std::filesystem::directory_iterator{"/proc/self/fd"}, {});
    };
    const auto round = [&] {
        bus.end();
        appearOnNoBus();
        bus.startAgain();
        appearOnTheNextBus();
        EXPECT_TRUE(isThere());
    };
    round();
    const auto before = descriptors();
    for (int i = 0; i < 5; ++i) {
        round();
    }
    EXPECT_TRUE(runUntil([&] { return descriptors() <= before; }));
}

} // namespace
} // namespace roost::test
