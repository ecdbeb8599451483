#include "bus/ModelProxy.h"

#include "tests/bus/ModelOnBus.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using Answer = ModelProxy::Answer;
using testing::ElementsAre;

class ModelProxyTest : public testing::Test, protected ModelOnBus {
protected:
    ModelProxyTest()
    {
        world.signInBefore("p1");
        world.signInBefore("p2");
        QObject::connect(&proxy, &ModelProxy::isRunningChanged, &proxy,
                         [this] { running.push_back(proxy.isRunning()); });
    }

    [[nodiscard]] bool comesToRun()
    {
        return runUntil([this] { return proxy.isRunning(); });
    }
    [[nodiscard]] bool comesToAgree()
    {
        return runUntil([this] { return agree(proxy.state(), world.state()); });
    }

    ModelProxy proxy{bus().address()};
    std::vector<bool> running;
};

TEST_F(ModelProxyTest, ShowsWhatTheAppPublishes)
{
    startOnBus();
    world.app().select("p2");
    EXPECT_FALSE(proxy.isRunning());
    EXPECT_TRUE(await(proxy.connectToApp()));
    EXPECT_TRUE(proxy.isRunning());
    EXPECT_THAT(running, ElementsAre(true));
    EXPECT_TRUE(agree(proxy.state(), world.state()));
    EXPECT_EQ(proxy.state().accounts().size(), 2U);
}

TEST_F(ModelProxyTest, FollowsEveryChange)
{
    startOnBus();
    ASSERT_TRUE(await(proxy.connectToApp()));
    world.app().select("p1");
    EXPECT_TRUE(comesToAgree());
    world.app().setUpdateStatus({"2.0", "3.0", true});
    EXPECT_TRUE(comesToAgree());
    world.signIn("p3");
    EXPECT_TRUE(comesToAgree());
    EXPECT_EQ(proxy.state().accounts().size(), 3U);
    EXPECT_TRUE(proxy.state().launchAtLogin());
    world.browser.wrongState = "x";
    world.signIn("p4");
    EXPECT_TRUE(comesToAgree());
    EXPECT_TRUE(std::holds_alternative<SignInState::Failed>(proxy.state().signInState()));
    world.time.advance(300s);
    EXPECT_TRUE(comesToAgree());
    EXPECT_THAT(running, ElementsAre(true));
}

TEST_F(ModelProxyTest, FindsNobodyAtFirstAndHearsTheAppComeAndGo)
{
    EXPECT_FALSE(await(proxy.connectToApp()));
    startOnBus();
    ASSERT_TRUE(comesToRun());
    EXPECT_TRUE(agree(proxy.state(), world.state()));

    disappear();
    ASSERT_TRUE(runUntil([this] { return !proxy.isRunning(); }));
    EXPECT_EQ(proxy.state().accounts().size(), 2U);

    world.app().select("p2");
    appear();
    ASSERT_TRUE(comesToRun());
    EXPECT_TRUE(comesToAgree());
    EXPECT_THAT(running, ElementsAre(true, false, true));
}

TEST_F(ModelProxyTest, HearsThatAnotherAppTakesOver)
{
    startOnBus();
    ASSERT_TRUE(await(proxy.connectToApp()));
    // One that stands in the queue for the name.
    BusPeer next(bus().address());
    ASSERT_EQ(next.takeName(0), 2U);
    world.app().select("p2");
    ASSERT_TRUE(comesToAgree());
    adaptor().detach();
    world.app().select("p1");
    ModelAdaptor other(world.app(), [] {});
    other.attach(next.connection());
    seat().leaveName();

    ASSERT_TRUE(runUntil([this] { return running.size() == 3; }));
    EXPECT_THAT(running, ElementsAre(true, false, true));
    EXPECT_TRUE(comesToAgree());
    world.app().select("p2");
    EXPECT_TRUE(comesToAgree());
}

TEST_F(ModelProxyTest, HearsAnAppThatComesToItsNameLater)
{
    const BusPeer early(bus().address());
    ASSERT_EQ(early.takeName(), 1U);
    EXPECT_FALSE(await(proxy.connectToApp())) << "somebody has the name, and is no running app";
    start();
    adaptor().attach(early.connection());
    EXPECT_TRUE(comesToRun());
    EXPECT_TRUE(comesToAgree());
    adaptor().detach();
}

TEST_F(ModelProxyTest, HearsThatTheBusGoesAndConnectsAnewWhenItIsAsked)
{
    // Without the name by which a bus can be told from the next one at the same place.
    const QString place = bus().address().section(QLatin1Char(','), 0, 0);
    ModelProxy lasting(place);
    startOnBus();
    ASSERT_TRUE(await(lasting.connectToApp()));
    bus().end();
    QTimer ticking;
    ticking.start(5ms);
    ASSERT_TRUE(runUntil([&] { return !lasting.isRunning(); }));
    EXPECT_EQ(await(lasting.select("p1")), Answer::failed);
    EXPECT_FALSE(await(lasting.connectToApp()));
    EXPECT_EQ(lasting.state().accounts().size(), 2U) << "as it was last heard of";

    GuardedProcess next({"dbus-daemon", "--nofork", "--nopidfile", "--print-address=1",
                         "--config-file=" + (bus().home() / "bus.conf").string()});
    ASSERT_NE(next.line(), "");
    world.app().select("p2");
    EXPECT_FALSE(await(lasting.connectToApp()));
    appearAt(place);
    ASSERT_TRUE(runUntil([&] { return lasting.isRunning(); }));
    EXPECT_TRUE(agree(lasting.state(), world.state()));
    world.app().select("p1");
    EXPECT_TRUE(runUntil([&] { return agree(lasting.state(), world.state()); }));
}

TEST_F(ModelProxyTest, CanBeAskedTwiceAtATime)
{
    startOnBus();
    Pending first(proxy.connectToApp());
    Pending second(proxy.connectToApp());
    EXPECT_TRUE(first.get());
    EXPECT_TRUE(second.get());
    EXPECT_TRUE(await(proxy.connectToApp()));
    EXPECT_THAT(running, ElementsAre(true));
}

TEST_F(ModelProxyTest, FindsNoBus)
{
    ModelProxy none{{}};
    EXPECT_FALSE(await(none.connectToApp()));
    EXPECT_EQ(await(none.requestRefresh(true)), Answer::failed);
}

TEST_F(ModelProxyTest, HasTheAppDoWhatItIsAsked)
{
    startOnBus();
    ASSERT_TRUE(await(proxy.connectToApp()));
    world.widgetRequests();
    world.time.advance(100s);

    EXPECT_EQ(await(proxy.select("p2")), Answer::done);
    EXPECT_EQ(world.state().selectedProfileID(), "p2");
    EXPECT_EQ(await(proxy.select("p3")), Answer::noSuchProfile);
    EXPECT_EQ(await(proxy.signOut("p1")), Answer::done);
    EXPECT_EQ(world.stored("p1"), "");
    EXPECT_EQ(await(proxy.signOut("p1")), Answer::noSuchProfile);
    EXPECT_EQ(await(proxy.openRoost()), Answer::done);
    EXPECT_EQ(world.opened.size(), 1U);
    EXPECT_EQ(await(proxy.setLaunchAtLogin(false)), Answer::done);
    EXPECT_FALSE(world.loginItem.enabled);
    EXPECT_EQ(await(proxy.setLaunchAtLogin(true)), Answer::done);
    EXPECT_TRUE(world.loginItem.enabled);
    world.loginItem.isHidden = true;
    EXPECT_EQ(await(proxy.checkLaunchAtLogin()), Answer::done);
    EXPECT_TRUE(comesToAgree());
    EXPECT_TRUE(proxy.state().launchNeedsApproval());
    EXPECT_EQ(await(proxy.requestRefresh(false)), Answer::done);
    world.time.advance(1s);
    EXPECT_THAT(world.widgetRequests(), ElementsAre("widget p2"));
    world.browser.profileOfNextSignIn = "p2";
    world.browser.hesitation = 10s;
    Pending signingIn(proxy.signIn());
    EXPECT_THAT(awaitInTime(proxy.signInAddress()).value_or(""), testing::StartsWith("https://roost.test/"));
    world.time.advance(10s);
    EXPECT_EQ(signingIn.get().value(), "p2");
    EXPECT_EQ(world.browser.opened, 1);

    Pending givingUp(proxy.signIn());
    EXPECT_TRUE(awaitInTime(proxy.signInAddress()));
    EXPECT_EQ(await(proxy.cancelSignIn()), Answer::done);
    EXPECT_EQ(givingUp.get().value(), std::nullopt);
    EXPECT_EQ(await(proxy.signInAddress()), std::nullopt);
    EXPECT_EQ(await(proxy.identify()),
              (ModelProxy::Identity{QStringLiteral("https://roost.test"),
                                    QString::fromStdString(world.app().sharedFolder().string())}));
    EXPECT_EQ(quits, 0);
    EXPECT_EQ(await(proxy.quitApp()), Answer::done);
    EXPECT_TRUE(runUntil([this] { return quits == 1; }));
}

TEST_F(ModelProxyTest, HasTheAppUpdateItself)
{
    class CountingUpdater final : public UpdateControl {
    public:
        std::string asked;

        void checkNow() override { asked += "check "; }
        void installAndRestart() override { asked += "install "; }
    };
    CountingUpdater updater;
    startOnBus();
    world.app().setUpdater(updater);
    ASSERT_TRUE(await(proxy.connectToApp()));
    EXPECT_EQ(await(proxy.checkForUpdates()), Answer::done);
    EXPECT_EQ(await(proxy.installAndRestart()), Answer::done);
    EXPECT_EQ(updater.asked, "check install ");
}

TEST_F(ModelProxyTest, DoesNotAskAboutAnotherProfileThanTheOneThatIsMeant)
{
    startOnBus();
    ASSERT_TRUE(await(proxy.connectToApp()));
    EXPECT_EQ(await(proxy.signOut(std::string("p1\0", 3))), Answer::noSuchProfile);
    EXPECT_EQ(await(proxy.select(std::string("p1\0x", 4))), Answer::noSuchProfile);
    EXPECT_EQ(await(proxy.select("\uFEFFp1")), Answer::noSuchProfile);
    EXPECT_EQ(world.state().accounts().size(), 2U);
    EXPECT_EQ(world.state().selectedProfileID(), std::nullopt);
}

TEST_F(ModelProxyTest, WaitsForARefreshAsLongAsItTakes)
{
    startOnBus();
    ASSERT_TRUE(await(proxy.connectToApp()));
    world.roost.latency = [] { return 10s; };
    world.time.advance(100s);
    Pending waiting(proxy.requestRefresh(true));
    ASSERT_TRUE(runUntil([this] { return proxy.state().isRefreshing(); }));
    EXPECT_FALSE(waiting.isDone());
    world.time.advance(100s);
    EXPECT_EQ(waiting.get(), Answer::done);
    EXPECT_TRUE(comesToAgree());
}

TEST_F(ModelProxyTest, FailsItsCallsWithoutAnApp)
{
    EXPECT_EQ(await(proxy.select("p1")), Answer::failed) << "before it is connected";
    ASSERT_FALSE(await(proxy.connectToApp()));
    EXPECT_EQ(await(proxy.requestRefresh(true)), Answer::failed) << "before the app is there";
    startOnBus();
    ASSERT_TRUE(comesToRun());
    world.roost.latency = [] { return 1h; };
    world.time.advance(100s);
    Pending waiting(proxy.requestRefresh(true));
    ASSERT_TRUE(runUntil([this] { return world.state().isRefreshing(); }));
    disappear();
    // The refresh, which still runs, keeps the connection; the process that ends does not.
    world.roost.latency = [] { return 0s; };
    quit();
    EXPECT_THAT((std::vector{Answer::failed, Answer::done}), testing::Contains(waiting.get()));
    EXPECT_EQ(await(proxy.select("p1")), Answer::failed) << "after the app went";
}

TEST_F(ModelProxyTest, MayGoBeforeItsTasks)
{
    startOnBus();
    auto brief = std::make_unique<ModelProxy>(bus().address());
    Pending connecting(brief->connectToApp());
    brief.reset();
    EXPECT_FALSE(connecting.get());

    for (int turns = 0; turns < 12; ++turns) {
        brief = std::make_unique<ModelProxy>(bus().address());
        Pending later(brief->connectToApp());
        for (int turn = 0; turn < turns; ++turn) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        }
        Pending selecting(brief->select("p1"));
        brief.reset();
        static_cast<void>(later.get());
        static_cast<void>(selecting.get());
    }
}

TEST_F(ModelProxyTest, DoesNotWaitForABusThatHangs)
{
    startOnBus();
    ASSERT_TRUE(await(proxy.connectToApp()));
    bus().freeze();
    Pending selecting(proxy.select("p2"));
    EXPECT_FALSE(runUntil([&] { return selecting.isDone(); }, 50ms));
    bus().thaw();
    EXPECT_EQ(selecting.get(), Answer::done);
}

} // namespace
} // namespace roost::test
