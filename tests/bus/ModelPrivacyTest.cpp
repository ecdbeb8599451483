#include "bus/ModelProxy.h"
#include "tests/bus/ModelOnBus.h"
#include "tests/support/Poll.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

/// Runs the event loop until the file holds `text`.
[[nodiscard]] bool comesToHold(const std::filesystem::path& file, const std::string& text)
{
    QTimer ticking;
    ticking.start(5ms);
    return runUntil([&] { return bytesOf(file).find(text) != std::string::npos; });
}

/// dbus-send by a user without privileges; what it said, in the end "ended".
std::string sentByAnotherUser(const PrivateBus& bus, const std::string& call)
{
    const ScratchFolder folder;
    const std::filesystem::path said = folder / "said";
    const std::string send =
        "setpriv --reuid=65534 --regid=65534 --clear-groups dbus-send --print-reply --bus=" +
        bus.address().toStdString() + " --dest=world.brisken.roost.mac " + call;
    const GuardedProcess process(
        {"sh", "-c", send + " >" + said.string() + " 2>&1; echo ended >>" + said.string()});
    EXPECT_TRUE(comesToHold(said, "ended"));
    return bytesOf(said);
}

const std::string model = "/world/brisken/roost/mac/Model ";
const std::string properties = model + "org.freedesktop.DBus.Properties.";
const std::string method = model + "world.brisken.roost.mac.Model1.";

TEST(ModelPrivacy, AnswersNoOtherUser)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the administrator can call as another user";
    }
    ModelOnBus app{PrivateBus::Users::all};
    app.world.signInBefore("p1");
    app.startOnBus();
    // Let in by the bus, whose own methods answer.
    EXPECT_THAT(sentByAnotherUser(app.bus(), "/ org.freedesktop.DBus.Peer.Ping"), HasSubstr("method return"));
    for (const std::string& call :
         {properties + "GetAll string:world.brisken.roost.mac.Model1",
          properties + "Get string:world.brisken.roost.mac.Model1 string:Accounts",
          method + "Select string:p1", method + "SignOut string:p1", method + "Quit", method + "Explode"}) {
        const std::string said = sentByAnotherUser(app.bus(), call);
        EXPECT_THAT(said, HasSubstr("world.brisken.roost.mac.Error.NotAllowed")) << call;
        EXPECT_THAT(said, Not(HasSubstr("p1"))) << call;
    }
    EXPECT_EQ(app.world.state().accounts().size(), 1U);
    EXPECT_EQ(app.world.state().selectedProfileID(), std::nullopt);
    EXPECT_EQ(app.quits, 0);

    const BusPeer own(app.bus().address());
    EXPECT_EQ(own.callModel(QStringLiteral("Select"), {QStringLiteral("p1")}).type(),
              QDBusMessage::ReplyMessage);
}

TEST(ModelPrivacy, HasNoSecretCrossTheBus)
{
    ModelOnBus app;
    const std::filesystem::path traffic = app.bus().home() / "traffic";
    const GuardedProcess monitor(
        {"sh", "-c",
         "exec dbus-monitor --address " + app.bus().address().toStdString() + " >" + traffic.string()});
    ASSERT_TRUE(comesToHold(traffic, "NameLost"));
    std::vector<std::string> secrets{"refresh-", "access-"};
    app.world.signInBefore("p1");
    app.startOnBus();
    ModelProxy proxy(app.bus().address());
    ASSERT_TRUE(await(proxy.connectToApp()));
    app.world.roost.profiles.emplace("p2", numbersOf("p2", app.world.time.now()));
    app.world.browser.profileOfNextSignIn = "p2";
    app.world.browser.hesitation = 10s;
    Pending signingIn(proxy.signIn());
    secrets.push_back("code=");
    EXPECT_TRUE(app.awaitInTime(proxy.signInAddress()));
    app.world.time.advance(10s);
    EXPECT_EQ(signingIn.get().value(), "p2");
    app.world.time.advance(4000s);
    for (const std::string& profile : {std::string("p1"), std::string("p2")}) {
        ASSERT_TRUE(app.world.stored(profile).starts_with("refresh-"));
    }
    app.world.browser.hesitation = 0s;
    app.world.browser.wrongState = "x";
    static_cast<void>(app.awaitInTime(proxy.signIn()));
    app.world.time.advance(1s);
    app.world.roost.trouble = [](const HttpRequest&) { return response(401, "access- refresh-"); };
    app.world.time.advance(1000s);
    Pending refreshing(proxy.requestRefresh(true));
    ASSERT_TRUE(runUntil([&] { return app.world.state().isRefreshing(); }));
    app.world.time.advance(100s);
    EXPECT_EQ(refreshing.get(), ModelProxy::Answer::done);
    await(proxy.signOut("p2"));
    const BusPeer peer(app.bus().address());
    peer.callModel(QStringLiteral("GetAll"), {RoostBus::modelInterface}, RoostBus::propertiesInterface);
    peer.callModel(QStringLiteral("Select"), {QStringLiteral("the end")});

    ASSERT_TRUE(comesToHold(traffic, "the end"));
    const std::string seen = bytesOf(traffic);
    EXPECT_THAT(seen, HasSubstr("Profile p1")) << "the records cross it";
    EXPECT_THAT(seen, HasSubstr("did not complete safely")) << "and the failures";
    for (const std::string& secret : secrets) {
        EXPECT_EQ(seen.find(secret), std::string::npos) << secret;
    }
}

} // namespace
} // namespace roost::test
