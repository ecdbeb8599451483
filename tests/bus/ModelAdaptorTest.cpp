#include "tests/bus/ModelOnBus.h"
#include "tests/support/Poll.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const QString selectMethod = QStringLiteral("Select");
const QString signOutMethod = QStringLiteral("SignOut");
const QString requestRefresh = QStringLiteral("RequestRefresh");

class CountingUpdater final : public UpdateControl {
public:
    int checks = 0;
    int installs = 0;

    void checkNow() override { ++checks; }
    void installAndRestart() override { ++installs; }
};

class ModelAdaptorTest : public testing::Test, protected ModelOnBus {
protected:
    ModelAdaptorTest()
    {
        world.signInBefore("p1");
        world.signInBefore("p2");
        startOnBus();
        peer.emplace(bus().address());
        listener.emplace(peer->connection());
        peer->catchUp();
        world.widgetRequests();
    }

    /// What was announced since the last call, everything that has happened by now.
    std::vector<ChangeListener::Change> announced()
    {
        QCoreApplication::processEvents();
        seat().catchUp();
        peer->catchUp();
        return std::exchange(listener->changes, {});
    }

    /// A call of the model, as it comes from the peer.
    QDBusMessage callFromPeer(const QString& method) const
    {
        return QDBusMessage::createMethodCall(peer->uniqueName(), RoostBus::modelPath,
                                              RoostBus::modelInterface, method);
    }

    CountingUpdater updater;
    std::optional<BusPeer> peer;
    std::optional<ChangeListener> listener;
};

TEST_F(ModelAdaptorTest, AnnouncesTheChangesOfOneTurnTogether)
{
    announced();
    world.app().setUpdateStatus({"2.0", {}, true});
    world.app().select("p2");
    world.app().setUpdateStatus({"3.0", {}, true});
    const auto changes = announced();

    ASSERT_THAT(changes, SizeIs(1));
    EXPECT_EQ(changes[0].values.keys(),
              (QStringList{QStringLiteral("SelectedProfileID"), QStringLiteral("UpdateStatus")}));
    EXPECT_EQ(changes[0].values.value(QStringLiteral("SelectedProfileID")).toStringList(),
              QStringList{QStringLiteral("p2")});
    EXPECT_THAT(changes[0].invalidated, IsEmpty());
}

TEST_F(ModelAdaptorTest, AnnouncesNothingWhenNothingChanges)
{
    announced();
    world.app().select(world.state().selectedProfileID());
    world.app().setUpdateStatus(world.state().updateStatus());
    EXPECT_THAT(announced(), IsEmpty());
}

TEST_F(ModelAdaptorTest, AnnouncesOnceThatTheNumbersChangedWithoutThem)
{
    announced();
    world.app().signOut("p1");
    const auto changes = announced();

    ASSERT_THAT(changes, SizeIs(1));
    EXPECT_EQ(changes[0].invalidated, QStringList{QStringLiteral("Accounts")});
    EXPECT_FALSE(changes[0].values.contains(QStringLiteral("Accounts")));
}

TEST_F(ModelAdaptorTest, AnnouncesEverythingWhenItComes)
{
    announced();
    disappear();
    world.app().select("p2");
    appear();
    EXPECT_TRUE(runUntil([&] { return listener->changes.size() == 1; }));
    EXPECT_THAT(listener->changes[0].values, SizeIs(7));
    EXPECT_EQ(listener->changes[0].invalidated, QStringList{QStringLiteral("Accounts")});
}

TEST_F(ModelAdaptorTest, AnswersARefreshAtOnceWhenNobodyWaits)
{
    world.roost.latency = [] { return 10s; };
    world.time.advance(100s);
    EXPECT_EQ(peer->callModel(requestRefresh, {false}).type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(world.state().isRefreshing());
}

TEST_F(ModelAdaptorTest, AnswersARefreshThatIsWaitedForWhenItIsOver)
{
    world.roost.latency = [] { return 10s; };
    world.time.advance(100s);
    Pending waiting(peer->startModelCall(requestRefresh, {true}));
    ASSERT_TRUE(runUntil([&] { return world.state().isRefreshing(); }));
    world.time.advance(15s);
    peer->catchUp();
    EXPECT_FALSE(waiting.isDone());
    world.time.advance(100s);
    EXPECT_EQ(waiting.get().type(), QDBusMessage::ReplyMessage);
    EXPECT_THAT(world.widgetRequests(), ElementsAre("widget p1", "widget p2"));
}

TEST_F(ModelAdaptorTest, AnswersASignOutWhenTheTokenIsGone)
{
    ASSERT_NE(world.stored("p1"), "");
    const QDBusMessage answer = peer->callModel(signOutMethod, {QStringLiteral("p1")});
    EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(world.stored("p1"), "");
    EXPECT_THAT(world.state().accounts(), SizeIs(1));
}

TEST_F(ModelAdaptorTest, DoesNotAnswerASignOutBeforeTheTokenIsGone)
{
    world.lock.hold();
    Pending signingOut(peer->startModelCall(signOutMethod, {QStringLiteral("p1")}));
    ASSERT_TRUE(runUntil([&] { return world.state().accounts().size() == 1; }));
    peer->catchUp();
    EXPECT_FALSE(signingOut.isDone());
    EXPECT_NE(world.stored("p1"), "");
    world.lock.release();
    EXPECT_EQ(signingOut.get().type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(world.stored("p1"), "");
}

TEST_F(ModelAdaptorTest, KnowsNoOtherProfiles)
{
    for (const QString& method : {selectMethod, signOutMethod}) {
        for (const QString& profile : {QStringLiteral("p3"), QString{}, QStringLiteral("p1 ")}) {
            EXPECT_EQ(peer->callModel(method, {profile}).errorName(), RoostBus::noSuchProfile);
        }
    }
    EXPECT_THAT(world.state().accounts(), SizeIs(2));
    EXPECT_EQ(world.state().selectedProfileID(), std::nullopt);
}

TEST_F(ModelAdaptorTest, DoesWhatItIsAsked)
{
    world.app().setUpdater(updater);
    peer->callModel(selectMethod, {QStringLiteral("p2")});
    EXPECT_EQ(world.state().selectedProfileID(), "p2");
    peer->callModel(QStringLiteral("OpenRoost"));
    EXPECT_THAT(world.opened, ElementsAre("https://roost.test/roost/overview"));
    peer->callModel(QStringLiteral("CheckForUpdates"));
    EXPECT_EQ(updater.checks, 1);
    EXPECT_EQ(updater.installs, 0);
    peer->callModel(QStringLiteral("InstallAndRestart"));
    EXPECT_EQ(updater.checks, 1);
    EXPECT_EQ(updater.installs, 1);

    world.roost.profiles.emplace("p3", numbersOf("p3", world.time.now()));
    world.browser.profileOfNextSignIn = "p3";
    EXPECT_EQ(peer->callModel(QStringLiteral("SignIn"), {false}).type(), QDBusMessage::ReplyMessage);
    world.time.advance(1s);
    EXPECT_THAT(world.state().accounts(), SizeIs(3));
    EXPECT_EQ(peer->callModel(QStringLiteral("Identify")).arguments(),
              (QVariantList{QStringLiteral("https://roost.test"),
                            QString::fromStdString(world.app().sharedFolder().string())}));
}

TEST_F(ModelAdaptorTest, SignsInOneAtATime)
{
    world.browser.hesitation = 10s;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(peer->callModel(QStringLiteral("SignIn"), {false}).type(), QDBusMessage::ReplyMessage);
    }
    // Not even with "wait" is there anything to wait for.
    EXPECT_EQ(peer->callModel(QStringLiteral("SignIn"), {true}).arguments(), QVariantList{QStringList{}});
    world.time.advance(20s);
    EXPECT_EQ(world.browser.opened, 1);
}

TEST_F(ModelAdaptorTest, TellsWhereASignInLeadsAndGivesItUp)
{
    EXPECT_EQ(peer->callModel(QStringLiteral("SignInAddress")).arguments(), QVariantList{QStringList{}});
    world.browser.hesitation = 10s;
    Pending signingIn(peer->startModelCall(QStringLiteral("SignIn"), {true}));
    const QStringList address = awaitInTime(peer->startModelCall(QStringLiteral("SignInAddress")))
                                    .arguments()
                                    .value(0)
                                    .toStringList();
    ASSERT_EQ(address.size(), 1);
    EXPECT_TRUE(address[0].startsWith(QStringLiteral("https://roost.test/"))) << address[0].toStdString();

    EXPECT_FALSE(signingIn.isDone());
    EXPECT_EQ(peer->callModel(QStringLiteral("CancelSignIn")).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(signingIn.get().arguments(), QVariantList{QStringList{}});
    EXPECT_TRUE(std::holds_alternative<SignInState::Idle>(world.state().signInState()));
}

TEST_F(ModelAdaptorTest, AnswersBeforeItQuits)
{
    Pending quitting(peer->startModelCall(QStringLiteral("Quit")));
    EXPECT_EQ(quits, 0);
    ASSERT_TRUE(runUntil([&] { return quits == 1; }));
    quit();
    EXPECT_EQ(quitting.get().type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(quits, 1);
}

TEST_F(ModelAdaptorTest, QuitsOnlyWhenTheCallHasBeenDealtWith)
{
    peer->callModel(selectMethod, {QStringLiteral("p1")});
    EXPECT_TRUE(adaptor().handleMessage(callFromPeer(QStringLiteral("Quit")), seat().connection()));
    EXPECT_EQ(quits, 0);
    EXPECT_TRUE(runUntil([&] { return quits == 1; }));
}

TEST_F(ModelAdaptorTest, DoesNothingThatWasOnItsWayWhenItLeft)
{
    const BusPeer place(bus().address());
    auto brief = std::make_unique<ModelAdaptor>(world.app(), [this] { ++quits; });
    brief->attach(place.connection());
    const QDBusMessage call = callFromPeer(QStringLiteral("Quit"));
    // Nobody knows yet who calls.
    EXPECT_TRUE(brief->handleMessage(call, place.connection()));
    brief->detach();
    EXPECT_FALSE(brief->handleMessage(call, place.connection()));
    place.catchUp();
    brief->attach(place.connection());
    EXPECT_FALSE(brief->handleMessage(call, seat().connection())) << "it came by another connection";
    EXPECT_TRUE(brief->handleMessage(call, place.connection()));
    brief.reset();
    place.catchUp();
    QCoreApplication::processEvents();
    EXPECT_EQ(quits, 0);
}

TEST_F(ModelAdaptorTest, LeavesNothingBehindOnItsConnection)
{
    const BusPeer place(bus().address());
    auto brief = std::make_unique<ModelAdaptor>(world.app(), [] {});
    brief->attach(place.connection());
    QDBusMessage introspect = QDBusMessage::createMethodCall(
        place.uniqueName(), RoostBus::modelPath, QStringLiteral("org.freedesktop.DBus.Introspectable"),
        QStringLiteral("Introspect"));
    const auto described = [&] {
        const QDBusMessage answer = await(callOnBus(peer->connection(), introspect, guardTime));
        return answer.arguments().value(0).toString().contains(RoostBus::modelInterface);
    };
    EXPECT_TRUE(described());
    brief->detach();
    EXPECT_FALSE(described());
    brief->attach(place.connection());
    EXPECT_TRUE(described());
    brief.reset();
    EXPECT_FALSE(described());
}

TEST_F(ModelAdaptorTest, KeepsTheOrderOfACallersCalls)
{
    for (int round = 0; round < 20; ++round) {
        // One that is not known yet.
        const BusPeer other(bus().address());
        std::vector<Pending<QDBusMessage>> calls;
        for (int i = 0; i < 20; ++i) {
            const bool isLast = i == 19;
            calls.emplace_back(other.startModelCall(
                selectMethod, {isLast || i % 2 == 0 ? QStringLiteral("p1") : QStringLiteral("p2")}));
            if (i % 3 == round % 3) {
                QCoreApplication::processEvents();
            }
        }
        for (auto& call : calls) {
            EXPECT_EQ(call.get().type(), QDBusMessage::ReplyMessage);
        }
        ASSERT_EQ(world.state().selectedProfileID(), "p1");
        world.app().select("p2");
    }
}

TEST_F(ModelAdaptorTest, DoesWhatItIsAskedByWhoWantsNoAnswer)
{
    QDBusMessage call = QDBusMessage::createMethodCall(RoostBus::name, RoostBus::modelPath,
                                                       RoostBus::modelInterface, selectMethod);
    call.setArguments({QStringLiteral("p2")});
    // Sent so, it wants no answer.
    EXPECT_TRUE(peer->connection().send(call));
    EXPECT_TRUE(runUntil([&] { return world.state().selectedProfileID() == "p2"; }));
}

TEST_F(ModelAdaptorTest, IsNotThereAfterItWent)
{
    disappear();
    EXPECT_EQ(peer->callModel(selectMethod, {QStringLiteral("p2")}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(world.state().selectedProfileID(), std::nullopt);
}

TEST_F(ModelAdaptorTest, ComesBackToABusThatWasKilled)
{
    listener.reset();
    peer.reset();
    bus().end();
    // Nobody tells the adaptor; what it announces meanwhile reaches nobody.
    world.app().select("p2");
    QCoreApplication::processEvents();
    EXPECT_FALSE(runUntil([&] { return false; }, 50ms));

    replaceBus();
    appear();
    const BusPeer late(bus().address());
    EXPECT_EQ(late.callModel(selectMethod, {QStringLiteral("p1")}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(world.state().selectedProfileID(), "p1");
}

TEST_F(ModelAdaptorTest, AnswersOnOneConnectionOnly)
{
    const BusPeer second(bus().address());
    adaptor().attach(second.connection());
    EXPECT_EQ(peer->callModel(selectMethod, {QStringLiteral("p2")}).type(), QDBusMessage::ErrorMessage);
    seat().leaveName();
    ASSERT_EQ(second.takeName(), 1U);
    EXPECT_EQ(peer->callModel(selectMethod, {QStringLiteral("p2")}).type(), QDBusMessage::ReplyMessage);
    adaptor().detach();
}

TEST_F(ModelAdaptorTest, LeavesNoDescriptorsBehind)
{
    const auto descriptors = [] {
        return std::distance(std::filesystem::directory_iterator{"/proc/self/fd"}, {});
    };
    listener.reset();
    peer.reset();
    const auto round = [&] {
        replaceBus();
        appear();
        const BusPeer other(bus().address());
        other.callModel(selectMethod, {QStringLiteral("p1")});
    };
    round();
    poll("the connections close",
         [&, last = std::ptrdiff_t{-1}]() mutable { return std::exchange(last, descriptors()) == last; });
    const auto before = descriptors();
    for (int i = 0; i < 5; ++i) {
        round();
    }
    poll("the connections close", [&] { return descriptors() <= before; });
}

} // namespace
} // namespace roost::test
