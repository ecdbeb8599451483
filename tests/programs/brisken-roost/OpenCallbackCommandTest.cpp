#include "programs/brisken-roost/OpenCallbackCommand.h"

#include "model/RoostLog.h"
#include "platform/CallbackReceiver.h"
#include "tests/support/Await.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>

#include <QProcess>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

const std::string callback = "briskenroost://callback?code=canary-code&state=canary-state";

/// The session of a user, in which the program is started a second time, for real.
struct Session {
    ScratchFolder run;
    QProcessEnvironment environment;
    CallbackInbox inbox{"briskenroost"};
    std::vector<std::string> taken;

    Session()
    {
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), QString::fromStdString(run.path().string()));
        environment.insert(QStringLiteral("HOME"), QString::fromStdString(run.path().string()));
        inbox.expect({"briskenroost", "canary-state", [this](std::string address) {
                          taken.push_back(std::move(address));
                          return true;
                      }});
    }

    struct Finished {
        int code = -1;
        std::string printed;
    };

    Finished start(const std::string& address) const
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral(BRISKEN_ROOST), {QString::fromStdString(address)});
        EXPECT_TRUE(runUntil([&] { return process.state() == QProcess::NotRunning; }));
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                process.readAll().toStdString()};
    }
};

TEST(OpenCallbackCommand, HandsTheAddressOverByTheBus)
{
    Session session;
    const PrivateBus bus;
    session.environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
    CallbackReceiver receiver(session.environment, session.inbox);
    ASSERT_EQ(await(receiver.open(guardTime)).bus, ApplicationService::Claim::Kind::owned);
    std::filesystem::remove(session.run / "world.brisken.roost.mac" / "callback");
    const auto finished = session.start(callback);
    EXPECT_EQ(finished.code, 0);
    EXPECT_EQ(finished.printed, "");
    EXPECT_THAT(session.taken, testing::ElementsAre(callback));
}

TEST(OpenCallbackCommand, HandsTheAddressOverByTheSocketWithoutABus)
{
    Session session;
    CallbackReceiver receiver(session.environment, session.inbox);
    ASSERT_TRUE(await(receiver.open(guardTime)).isOpen());
    const auto finished = session.start(callback);
    EXPECT_EQ(finished.code, 0);
    EXPECT_EQ(finished.printed, "");
    EXPECT_THAT(session.taken, testing::ElementsAre(callback));
}

TEST(OpenCallbackCommand, SaysInOneLineThatNobodyWaits)
{
    const Session session;
    const auto finished = session.start(callback);
    EXPECT_EQ(finished.code, 0);
    EXPECT_EQ(std::ranges::count(finished.printed, '\n'), 1);
    EXPECT_THAT(finished.printed, HasSubstr("callback not delivered: no sign-in is waiting"));
    EXPECT_THAT(finished.printed, Not(HasSubstr("canary")));
}

TEST(OpenCallbackCommand, SaysInOneLineThatItsSignInIsOver)
{
    Session session;
    const LogCatcher log;
    CallbackReceiver receiver(session.environment, session.inbox);
    ASSERT_TRUE(await(receiver.open(guardTime)).isOpen());
    session.start(callback);
    const auto finished = session.start(callback);
    EXPECT_EQ(finished.code, 0);
    EXPECT_EQ(std::ranges::count(finished.printed, '\n'), 1);
    EXPECT_THAT(finished.printed,
                HasSubstr("callback not delivered: the sign-in that it belongs to is over"));
    EXPECT_THAT(finished.printed, Not(HasSubstr("canary")));
    EXPECT_EQ(log.messages(RoostLog::auth().categoryName()).size(), 1) << "and the other process in one";
}

TEST(OpenCallbackCommand, DoesNotWaitForABusThatHangs)
{
    Session session;
    PrivateBus bus;
    bus.freeze();
    session.environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
    const LogCatcher log;
    EXPECT_EQ(await(runOpenCallback({callback}, session.environment, 100ms)).code, ExitCode::fine);
    EXPECT_EQ(log.messages(RoostLog::auth().categoryName()).size(), 1);
    bus.thaw();
}

} // namespace
} // namespace roost::test
