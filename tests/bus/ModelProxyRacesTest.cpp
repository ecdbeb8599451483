#include "bus/ModelProperties.h"
#include "bus/ModelProxy.h"
#include "tests/bus/BusPeer.h"
#include "tests/support/PrivateBus.h"

#include <gmock/gmock.h>

#include <deque>

namespace roost::test {
namespace {

using namespace std::chrono_literals;

/// An app that answers when the test says so, with what the test says.
class ScriptedApp {
public:
    explicit ScriptedApp(const PrivateBus& bus) : peer(bus.address()) {}

    /// What `state` says.
    QVariantMap everything() const
    {
        QVariantMap values;
        for (const auto& [name, property] : ModelProperties::all()) {
            values.insert(name, property.value(state));
        }
        return values;
    }

    /// Answers the call that came first with that.
    void answer() { answerWith({everything()}); }

    void answerWith(const QVariantList& arguments)
    {
        ASSERT_FALSE(calls.empty()) << "nobody has asked";
        const QDBusMessage call = calls.front();
        calls.pop_front();
        peer.connection().send(call.createReply(arguments));
    }

    /// Announces what `state` says of the property.
    void announce(const char* name, const QDBusConnection* by = nullptr) const
    {
        const QString property = QString::fromLatin1(name);
        announceValues({{property, ModelProperties::find(property)->value(state)}}, {}, by);
    }

    void announceValues(const QVariantMap& values, const QStringList& invalidated,
                        const QDBusConnection* by = nullptr) const
    {
        QDBusMessage signal = QDBusMessage::createSignal(RoostBus::modelPath, RoostBus::propertiesInterface,
                                                         QStringLiteral("PropertiesChanged"));
        signal.setArguments({RoostBus::modelInterface, values, invalidated});
        (by != nullptr ? *by : peer.connection()).send(signal);
    }

    [[nodiscard]] bool isAsked()
    {
        return runUntil([this] { return !calls.empty(); });
    }

    BusPeer peer;
    AppState state;
    std::deque<QDBusMessage> calls;

private:
    /// Keeps what asks for the state; the rest is answered at once.
    void take(const QDBusMessage& call)
    {
        if (call.interface() == RoostBus::propertiesInterface) {
            calls.push_back(call);
        } else {
            peer.connection().send(call.createReply());
        }
    }

    CallCatcher catcher_{peer.connection(),
                         [this](const QDBusMessage& call, const QDBusConnection&) { take(call); },
                         RoostBus::modelPath};
};

class ModelProxyRacesTest : public testing::Test {
protected:
    /// Answers what is asked until nothing is asked any more.
    void answerAll()
    {
        settle();
        while (!app.calls.empty()) {
            app.answer();
            settle();
        }
    }

    /// What is on its way arrives, there and back: the proxy asks something, and the answer comes after all
    /// that it was told before; once more, for what it has asked because of that.
    void settle()
    {
        for (int i = 0; i < 2; ++i) {
            app.peer.catchUp();
            onlooker.catchUp();
            static_cast<void>(await(proxy.openRoost()));
        }
        app.peer.catchUp();
    }

    /// The proxy has read the app's state.
    void connectBoth()
    {
        ASSERT_EQ(app.peer.takeName(), 1U);
        Pending connecting(proxy.connectToApp());
        ASSERT_TRUE(app.isAsked());
        app.answer();
        ASSERT_TRUE(connecting.get());
        settle();
    }

    PrivateBus bus;
    ScriptedApp app{bus};
    BusPeer onlooker{bus.address()};
    ModelProxy proxy{bus.address()};
};

TEST_F(ModelProxyRacesTest, BelievesWhatCameAfterTheAnswerItReads)
{
    ASSERT_EQ(app.peer.takeName(), 1U);
    Pending connecting(proxy.connectToApp());
    ASSERT_TRUE(app.isAsked());
    app.answer();
    app.state.setRefreshing(true);
    app.announce("IsRefreshing");
    answerAll();
    EXPECT_TRUE(connecting.get());
    answerAll();
    EXPECT_TRUE(proxy.state().isRefreshing());
}

TEST_F(ModelProxyRacesTest, BelievesWhatCameWhileItReads)
{
    ASSERT_EQ(app.peer.takeName(), 1U);
    Pending connecting(proxy.connectToApp());
    ASSERT_TRUE(app.isAsked());
    const QVariantMap old = app.everything();
    app.state.setRefreshing(true);
    app.announce("IsRefreshing");
    app.answerWith({old});
    answerAll();
    EXPECT_TRUE(connecting.get());
    EXPECT_TRUE(proxy.state().isRefreshing());
}

TEST_F(ModelProxyRacesTest, BelievesWhatCameWhileItReadsAgain)
{
    connectBoth();
    app.announceValues({}, {QStringLiteral("Accounts")});
    ASSERT_TRUE(app.isAsked());
    const QVariantMap old = app.everything();
    app.state.setRefreshing(true);
    app.announce("IsRefreshing");
    settle();
    app.answerWith({old});
    answerAll();
    EXPECT_TRUE(proxy.state().isRefreshing());
}

TEST_F(ModelProxyRacesTest, KeepsNobodyWhenTheAppHasAlwaysSomethingToTell)
{
    ASSERT_EQ(app.peer.takeName(), 1U);
    Pending connecting(proxy.connectToApp());
    for (int i = 0; i < 3 && !connecting.isDone(); ++i) {
        ASSERT_TRUE(app.isAsked());
        app.announceValues({}, {QStringLiteral("Accounts")});
        settle();
        app.answer();
        settle();
    }
    EXPECT_TRUE(connecting.isDone());
    answerAll();
    EXPECT_TRUE(connecting.get());
}

TEST_F(ModelProxyRacesTest, BelievesTheBusThatTellsOfAnAppWhileItIsAsked)
{
    ASSERT_FALSE(await(proxy.connectToApp()));
    Pending again(proxy.connectToApp());
    // The answer that there is none is on its way before there is one, and is looked at after.
    for (int i = 0; i < 20; ++i) {
        ASSERT_FALSE(bus.hasName(RoostBus::name));
    }
    QDBusMessage taking =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("RequestName"));
    taking.setArguments({RoostBus::name, 0U});
    app.peer.connection().call(taking);
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(bus.hasName(RoostBus::name));
    }
    ASSERT_TRUE(app.isAsked());
    answerAll();
    static_cast<void>(again.get());
    EXPECT_TRUE(proxy.isRunning());
}

TEST_F(ModelProxyRacesTest, TakesNothingFromAnAppThatLeftBeforeItAnswered)
{
    std::vector<bool> running;
    QObject::connect(&proxy, &ModelProxy::isRunningChanged, &proxy,
                     [&] { running.push_back(proxy.isRunning()); });
    ASSERT_EQ(app.peer.takeName(), 1U);
    Pending connecting(proxy.connectToApp());
    ASSERT_TRUE(app.isAsked());
    app.peer.leaveName();
    settle();
    app.state.setSelectedProfileID("left");
    app.answer();
    EXPECT_FALSE(connecting.get());
    EXPECT_TRUE(running.empty());
    EXPECT_EQ(proxy.state().selectedProfileID(), std::nullopt);
}

TEST_F(ModelProxyRacesTest, DoesNotTakeAnAppThatLeavesForOneThatRuns)
{
    ASSERT_EQ(app.peer.takeName(), 1U);
    Pending connecting(proxy.connectToApp());
    ASSERT_TRUE(app.isAsked());
    app.answer();
    app.peer.leaveName();
    static_cast<void>(connecting.get());
    settle();
    EXPECT_FALSE(proxy.isRunning());
}

TEST_F(ModelProxyRacesTest, ReadsTheAppThatHasTheNameNow)
{
    ASSERT_EQ(app.peer.takeName(), 1U);
    ScriptedApp next(bus);
    ASSERT_EQ(next.peer.takeName(0), 2U);
    next.state.setSelectedProfileID("next");
    app.state.setSelectedProfileID("first");
    Pending connecting(proxy.connectToApp());
    ASSERT_TRUE(app.isAsked());
    app.peer.leaveName();
    app.answer();
    ASSERT_TRUE(next.isAsked());
    next.answer();
    EXPECT_TRUE(connecting.get());
    EXPECT_EQ(proxy.state().selectedProfileID(), "next");
}

TEST_F(ModelProxyRacesTest, BelievesTheAppAlone)
{
    connectBoth();
    app.state.setRefreshing(true);
    const QDBusConnection stranger = onlooker.connection();
    app.announce("IsRefreshing", &stranger);
    settle();
    EXPECT_FALSE(proxy.state().isRefreshing());
    EXPECT_TRUE(app.calls.empty());

    QDBusMessage gone = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/DBus"),
                                                   QStringLiteral("org.freedesktop.DBus"),
                                                   QStringLiteral("NameOwnerChanged"));
    gone.setArguments({RoostBus::name, app.peer.uniqueName(), QString{}});
    stranger.send(gone);
    settle();
    EXPECT_TRUE(proxy.isRunning());

    app.announce("IsRefreshing");
    settle();
    EXPECT_TRUE(proxy.state().isRefreshing());
    EXPECT_TRUE(app.calls.empty()) << "the value was in the announcement";
}

TEST_F(ModelProxyRacesTest, ReadsOnceForManyAnnouncementsThatCarryNothing)
{
    connectBoth();
    for (int i = 0; i < 1000; ++i) {
        app.announceValues({}, {QStringLiteral("Accounts")});
    }
    settle();
    EXPECT_EQ(app.calls.size(), 1U);
    app.state.setAccounts({{.profileId = "p1"}});
    app.answer();
    settle();
    EXPECT_EQ(app.calls.size(), 1U);
    app.state.setAccounts({{.profileId = "p2"}});
    app.answer();
    settle();
    EXPECT_TRUE(app.calls.empty());
    EXPECT_EQ(proxy.state().accounts(), app.state.accounts());
}

TEST_F(ModelProxyRacesTest, LeavesOutWhatItDoesNotUnderstand)
{
    connectBoth();
    app.state.setSelectedProfileID("p1");
    app.announceValues({{QStringLiteral("IsRefreshing"), QStringLiteral("yes")},
                        {QStringLiteral("LaunchAtLogin"), 1},
                        {QStringLiteral("SignInState"), QStringList{}},
                        {QStringLiteral("Colour"), QStringLiteral("red")},
                        {QStringLiteral("SelectedProfileID"), QStringList{QStringLiteral("p1")}}},
                       {});
    settle();
    EXPECT_EQ(proxy.state().selectedProfileID(), "p1");
    EXPECT_FALSE(proxy.state().isRefreshing());
    EXPECT_FALSE(proxy.state().launchAtLogin());
}

TEST_F(ModelProxyRacesTest, TakesAnAnswerOfAnotherFormForNoApp)
{
    ASSERT_EQ(app.peer.takeName(), 1U);
    Pending connecting(proxy.connectToApp());
    ASSERT_TRUE(app.isAsked());
    app.answerWith({QStringLiteral("hello")});
    EXPECT_FALSE(connecting.get());
    EXPECT_FALSE(proxy.isRunning());

    Pending again(proxy.connectToApp());
    ASSERT_TRUE(app.isAsked());
    app.answerWith({});
    EXPECT_FALSE(again.get());
}

TEST_F(ModelProxyRacesTest, ReadsAnAppThatSpeaksUpLater)
{
    ASSERT_EQ(app.peer.takeName(), 1U);
    Pending connecting(proxy.connectToApp());
    ASSERT_TRUE(app.isAsked());
    app.answerWith({});
    ASSERT_FALSE(connecting.get());
    app.state.setRefreshing(true);
    app.announce("IsRefreshing");
    ASSERT_TRUE(app.isAsked());
    app.answer();
    EXPECT_TRUE(runUntil([this] { return proxy.isRunning(); }));
    EXPECT_TRUE(proxy.state().isRefreshing());
}

} // namespace
} // namespace roost::test
