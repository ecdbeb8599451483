#include "platform/CallbackReceiver.h"

#include "model/RoostLog.h"
#include "tests/platform/ScratchDesktop.h"
#include "tests/support/Await.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/PrivateBus.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Bus = ApplicationService::Claim::Kind;
using Socket = CallbackSocket::Standing;

std::string callbackOf(const std::string& state)
{
    return "briskenroost://callback?code=canary&state=" + state;
}

/// A process that waits for the callback with the state "s".
struct Waiting {
    CallbackInbox inbox{"briskenroost"};
    std::vector<std::string> taken;
    CallbackReceiver receiver;

    explicit Waiting(const QProcessEnvironment& environment) : receiver(environment, inbox) {}

    CallbackReceiver::Doors open(std::chrono::milliseconds timeout = guardTime)
    {
        inbox.expect({"briskenroost", "s", [this](std::string address) {
                          taken.push_back(std::move(address));
                          return true;
                      }});
        return await(receiver.open(timeout));
    }
};

struct Session {
    LogCatcher log;
    ScratchDesktop desktop;
    PrivateBus bus;

    void join() { desktop.set("DBUS_SESSION_BUS_ADDRESS", bus.address().toStdString()); }

    Handover handOver(const std::string& address, std::chrono::milliseconds timeout = guardTime) const
    {
        return await(handOverCallback(desktop.environment, address, timeout));
    }
    QList<QString> lines() const { return log.messages(RoostLog::auth().categoryName()); }
};

TEST(CallbackReceiver, TakesACallbackByTheBus)
{
    Session session;
    session.join();
    Waiting waiting(session.desktop.environment);
    EXPECT_EQ(waiting.open(), (CallbackReceiver::Doors{Bus::owned, Socket::listening}));
    std::filesystem::remove(session.desktop / "run" / "world.brisken.roost.mac" / "callback");
    EXPECT_EQ(session.handOver(callbackOf("s")), Handover::taken);
    EXPECT_THAT(waiting.taken, ElementsAre(callbackOf("s")));
    EXPECT_THAT(session.log.lines(), IsEmpty());
}

TEST(CallbackReceiver, TakesACallbackByTheSocketWithoutABus)
{
    Session session;
    Waiting waiting(session.desktop.environment);
    const auto doors = waiting.open();
    EXPECT_EQ(doors, (CallbackReceiver::Doors{Bus::noBus, Socket::listening}));
    EXPECT_TRUE(doors.isOpen());
    EXPECT_EQ(session.handOver(callbackOf("s")), Handover::taken);
    EXPECT_THAT(waiting.taken, ElementsAre(callbackOf("s")));
}

TEST(CallbackReceiver, TakesACallbackByTheSocketWhenTheBusGoesAway)
{
    Session session;
    session.join();
    Waiting waiting(session.desktop.environment);
    waiting.open();
    session.bus.end();
    EXPECT_EQ(session.handOver(callbackOf("s")), Handover::taken);
    EXPECT_THAT(waiting.taken, ElementsAre(callbackOf("s")));
}

TEST(CallbackReceiver, TakesACallbackByTheSocketWhenTheBusHangs)
{
    Session session;
    session.join();
    session.bus.freeze();
    Waiting waiting(session.desktop.environment);
    EXPECT_EQ(waiting.open(200ms), (CallbackReceiver::Doors{Bus::noBus, Socket::listening}));
    EXPECT_EQ(session.handOver(callbackOf("s"), 500ms), Handover::taken);
    EXPECT_THAT(waiting.taken, ElementsAre(callbackOf("s")));
    session.bus.thaw();
}

TEST(CallbackReceiver, TakesACallbackByTheSocketWhenWhoHasTheNameDeclines)
{
    Session session;
    session.join();
    ApplicationService stranger{session.bus.address(), [](const QStringList&) { return false; }};
    await(stranger.start(guardTime));
    Waiting waiting(session.desktop.environment);
    const auto doors = waiting.open();
    EXPECT_EQ(doors, (CallbackReceiver::Doors{Bus::taken, Socket::listening}));
    EXPECT_TRUE(doors.isOpen());
    EXPECT_EQ(session.handOver(callbackOf("s")), Handover::taken);
    EXPECT_THAT(waiting.taken, ElementsAre(callbackOf("s")));
}

TEST(CallbackReceiver, WaitsForNoBusAfterAStop)
{
    Session session;
    session.join();
    session.bus.freeze();
    Waiting waiting(session.desktop.environment);
    std::stop_source stop;
    Pending opening(waiting.receiver.open(guardTime, stop.get_token()));
    EXPECT_FALSE(opening.isDone());
    stop.request_stop();
    EXPECT_EQ(opening.get(20s), (CallbackReceiver::Doors{Bus::noBus, Socket::listening}));
    session.bus.thaw();
}

TEST(CallbackReceiver, TellsTheSecondOfTwoThatAnotherWaits)
{
    Session session;
    session.join();
    Waiting first(session.desktop.environment);
    first.open();
    Waiting second(session.desktop.environment);
    const auto doors = second.open();
    EXPECT_EQ(doors, (CallbackReceiver::Doors{Bus::taken, Socket::busy}));
    EXPECT_FALSE(doors.isOpen());
    EXPECT_TRUE(doors.isAnotherWaiting());
    EXPECT_EQ(session.handOver(callbackOf("s")), Handover::taken);
    EXPECT_THAT(first.taken, ElementsAre(callbackOf("s")));
    EXPECT_THAT(second.taken, IsEmpty());
}

TEST(CallbackReceiver, DeclinesWhatIsNotWaitedFor)
{
    Session session;
    Waiting waiting(session.desktop.environment);
    waiting.open();
    EXPECT_EQ(session.handOver(callbackOf("other")), Handover::declined);
    EXPECT_EQ(session.lines().size(), 1) << "one line for each";
    EXPECT_EQ(session.handOver("https://roost.example/"), Handover::declined);
    EXPECT_EQ(session.lines().size(), 2);
    EXPECT_FALSE(session.log.saw(u"canary"));
    EXPECT_THAT(waiting.taken, IsEmpty());
}

TEST(CallbackReceiver, HasNoWayWithoutABusAndAFolder)
{
    Session session;
    session.desktop.set("XDG_RUNTIME_DIR", "");
    session.desktop.set("TMPDIR", "/nowhere");
    Waiting waiting(session.desktop.environment);
    const auto doors = waiting.open();
    EXPECT_EQ(doors, CallbackReceiver::Doors{});
    EXPECT_FALSE(doors.isOpen());
    EXPECT_FALSE(doors.isAnotherWaiting());
    EXPECT_EQ(session.handOver(callbackOf("s")), Handover::noWay);
}

TEST(CallbackReceiver, IsFoundByNobodyWhenItIsGone)
{
    Session session;
    session.join();
    {
        Waiting waiting(session.desktop.environment);
        waiting.open();
    }
    EXPECT_EQ(session.handOver(callbackOf("s")), Handover::nobody);
}

} // namespace
} // namespace roost::test
