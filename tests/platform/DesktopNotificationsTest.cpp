#include "platform/DesktopNotifications.h"

#include "tests/support/Await.h"
#include "tests/support/NotificationServerStandIn.h"
#include "tests/support/PrivateBus.h"

#include <gmock/gmock.h>

#include <QDBusConnectionInterface>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using Authorization = NotificationCenter::Authorization;
using Manner = NotificationServerStandIn::Manner;
using Request = NotificationCenter::Request;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using UserInfo = NotificationCenter::UserInfo;

const QStringList everything{QStringLiteral("body"), QStringLiteral("actions"),
                             QStringLiteral("body-markup")};

Request requestOf(const std::string& identifier)
{
    return {
        identifier, "Title of " + identifier, "Body", "postWentOut", {{"url", "https://a/" + identifier}}};
}

/// Remembers what the user opened.
struct Listener final : NotificationCenter::Delegate {
    void userOpened(UserInfo userInfo) override { opened.push_back(userInfo.at("url")); }

    std::vector<std::string> opened;
};

class DesktopNotificationsTest : public testing::Test {
protected:
    DesktopNotificationsTest() { center.setDelegate(&listener); }

    /// Another server in the place of the one before.
    NotificationServerStandIn& serve(const QStringList& capabilities = everything, uint firstId = 1)
    {
        server.reset();
        server = std::make_unique<NotificationServerStandIn>(bus.address(), capabilities, firstId);
        return *server;
    }

    bool add(const Request& request) { return await(center.add(request, guardTime)); }
    Authorization authorization() { return await(center.authorization(guardTime)); }

    const NotificationServerStandIn::Notification& last() const { return server->taken().back(); }

    /// Returns when everything that the server has said so far was heard.
    void settle() { ASSERT_TRUE(add(requestOf("settled"))); }

    PrivateBus bus;
    std::unique_ptr<NotificationServerStandIn> server;
    DesktopNotifications center{bus.address(), [] { return QStringLiteral("Öffnen"); }};
    Listener listener;
};

TEST_F(DesktopNotificationsTest, MayNotifyWhenThereIsAServer)
{
    EXPECT_EQ(authorization(), Authorization::denied);
    EXPECT_FALSE(add(requestOf("a")));
    serve();
    EXPECT_EQ(authorization(), Authorization::authorized);
    EXPECT_EQ(await(center.requestAuthorization(guardTime)), Authorization::authorized);
    EXPECT_TRUE(add(requestOf("a")));
}

TEST_F(DesktopNotificationsTest, MayNotNotifyWithoutABus)
{
    for (const QString& address : {QString{}, QStringLiteral("unix:path=/nowhere/bus")}) {
        DesktopNotifications alone{address, [] { return QStringLiteral("Open"); }};
        EXPECT_EQ(await(alone.authorization(guardTime)), Authorization::denied);
        EXPECT_FALSE(await(alone.add(requestOf("a"), guardTime)));
    }
    serve();
    ASSERT_TRUE(add(requestOf("a")));
    bus.end();
    EXPECT_FALSE(add(requestOf("a")));
    EXPECT_EQ(authorization(), Authorization::denied);
}

TEST_F(DesktopNotificationsTest, HandsOverAllOfANotification)
{
    serve();
    ASSERT_TRUE(add(requestOf("a")));
    EXPECT_EQ(last().appName, QStringLiteral("Brisken Roost"));
    EXPECT_EQ(last().replaces, 0U);
    EXPECT_EQ(last().icon, QString{});
    EXPECT_EQ(last().summary, QStringLiteral("Title of a"));
    EXPECT_EQ(last().body, QStringLiteral("Body"));
    EXPECT_THAT(last().actions, ElementsAre(QStringLiteral("default"), QStringLiteral("Öffnen"),
                                            QStringLiteral("open"), QStringLiteral("Öffnen")));
    EXPECT_EQ(last().hints,
              (QVariantMap{{QStringLiteral("category"), QStringLiteral("postWentOut")},
                           {QStringLiteral("desktop-entry"), QStringLiteral("world.brisken.roost.mac")},
                           {QStringLiteral("sound-name"), QStringLiteral("message-new-instant")}}));
    EXPECT_EQ(last().timeout, -1);
}

TEST_F(DesktopNotificationsTest, HandsMarkupOverAsTextToWhoeverReadsMarkup)
{
    Request request = requestOf("a");
    request.title = "<i>1 & 2</i>";
    request.body = "<b>1</b> & \"2\" &amp;\n“3” 😀";
    serve();
    ASSERT_TRUE(add(request));
    EXPECT_EQ(last().summary, QStringLiteral("<i>1 & 2</i>"));
    EXPECT_EQ(last().body, QStringLiteral("&lt;b&gt;1&lt;/b&gt; &amp; &quot;2&quot; &amp;amp;\n“3” 😀"));
    serve({QStringLiteral("body")});
    ASSERT_TRUE(add(request));
    EXPECT_EQ(last().body, QStringLiteral("<b>1</b> & \"2\" &amp;\n“3” 😀"));
}

TEST_F(DesktopNotificationsTest, HandsOverNoCharacterThatEndsATextOrIsNone)
{
    serve();
    Request request = requestOf("a");
    request.title = "before\0after\x1f"s;
    request.body = "be\0fore\n\x01\x08 after\t\r\uFFFE\uFFFF ÿ😀 \xff"s;
    ASSERT_TRUE(add(request));
    EXPECT_EQ(last().summary, QStringLiteral("beforeafter"));
    EXPECT_EQ(last().body, QStringLiteral("before\n after\t\r ÿ😀 \uFFFD"));
}

TEST_F(DesktopNotificationsTest, OffersNothingToOpenWhereThatCannotBe)
{
    serve({QStringLiteral("body")});
    ASSERT_TRUE(add(requestOf("a")));
    EXPECT_THAT(last().actions, IsEmpty());
    serve();
    Request request = requestOf("a");
    request.userInfo.clear();
    ASSERT_TRUE(add(request));
    EXPECT_THAT(last().actions, IsEmpty());
}

TEST_F(DesktopNotificationsTest, AsksEachServerOnceWhatItCanDo)
{
    serve();
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(add(requestOf("a")));
        ASSERT_EQ(authorization(), Authorization::authorized);
    }
    EXPECT_EQ(server->timesAsked(), 1);
    serve({});
    ASSERT_TRUE(add(requestOf("b")));
    EXPECT_EQ(server->timesAsked(), 1);
    EXPECT_THAT(last().actions, IsEmpty());
}

TEST_F(DesktopNotificationsTest, TellsWhatTheUserOpens)
{
    serve();
    ASSERT_TRUE(add(requestOf("a")) && add(requestOf("b")));
    server->invoke(2, QStringLiteral("default"));
    server->invoke(1, QStringLiteral("open"));
    server->invoke(1, QStringLiteral("default"));
    settle();
    EXPECT_THAT(listener.opened, ElementsAre("https://a/b", "https://a/a", "https://a/a"));
}

TEST_F(DesktopNotificationsTest, IgnoresActionsThatAreNotItsOwn)
{
    serve();
    ASSERT_TRUE(add(requestOf("a")));
    server->invoke(1, QStringLiteral("inline-reply"));
    server->invoke(2, QStringLiteral("default"));
    settle();
    EXPECT_THAT(listener.opened, IsEmpty());
}

TEST_F(DesktopNotificationsTest, BelievesTheServerAlone)
{
    serve();
    ASSERT_TRUE(add(requestOf("a")));
    QDBusMessage forged = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/Notifications"),
                                                     QStringLiteral("org.freedesktop.Notifications"),
                                                     QStringLiteral("ActionInvoked"));
    forged.setArguments({1U, QStringLiteral("default")});
    ASSERT_TRUE(bus.connection().send(forged));
    // The bus has passed it on when it answers the one that sent it.
    ASSERT_TRUE(bus.connection().interface()->isServiceRegistered(QStringLiteral("a.b")).isValid());
    settle();
    EXPECT_THAT(listener.opened, IsEmpty());
}

TEST_F(DesktopNotificationsTest, TellsNobodyWhenNobodyListens)
{
    serve();
    ASSERT_TRUE(add(requestOf("a")));
    center.setDelegate(nullptr);
    server->invoke(1, QStringLiteral("default"));
    settle();
    EXPECT_THAT(listener.opened, IsEmpty());
}

TEST_F(DesktopNotificationsTest, TellsThatWhatIsOverWasOpened)
{
    serve();
    for (const uint reason : {1U, 2U, 3U, 4U}) {
        ASSERT_TRUE(add(requestOf(std::to_string(reason))));
        server->close(last().id, reason);
        server->invoke(last().id, QStringLiteral("default"));
    }
    settle();
    EXPECT_THAT(listener.opened, ElementsAre("https://a/1", "https://a/2", "https://a/3", "https://a/4"));
}

TEST_F(DesktopNotificationsTest, RemembersTheLastThousand)
{
    serve();
    for (int i = 1; i <= 1'001; ++i) {
        ASSERT_TRUE(add(requestOf(std::to_string(i))));
    }
    server->invoke(1, QStringLiteral("default"));
    server->invoke(2, QStringLiteral("default"));
    server->invoke(1'001, QStringLiteral("default"));
    settle();
    EXPECT_THAT(listener.opened, ElementsAre("https://a/2", "https://a/1001"));
}

TEST_F(DesktopNotificationsTest, BelievesTheServerAloneThatANotificationIsGone)
{
    serve();
    ASSERT_TRUE(add(requestOf("a")));
    QDBusMessage forged = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/Notifications"),
                                                     QStringLiteral("org.freedesktop.Notifications"),
                                                     QStringLiteral("NotificationClosed"));
    forged.setArguments({1U, 2U});
    ASSERT_TRUE(bus.connection().send(forged));
    ASSERT_TRUE(bus.connection().interface()->isServiceRegistered(QStringLiteral("a.b")).isValid());
    settle();
    ASSERT_TRUE(add(requestOf("a")));
    EXPECT_EQ(last().replaces, 1U);
}

TEST_F(DesktopNotificationsTest, ReplacesWhatIsShownUnderTheSameIdentifier)
{
    serve();
    ASSERT_TRUE(add(requestOf("a")) && add(requestOf("b")));
    Request again = requestOf("a");
    again.userInfo["url"] = "https://a/second";
    ASSERT_TRUE(add(again));
    EXPECT_EQ(last().replaces, 1U);
    server->invoke(1, QStringLiteral("default"));
    settle();
    EXPECT_THAT(listener.opened, ElementsAre("https://a/second"));
}

TEST_F(DesktopNotificationsTest, ReplacesTheNewestOfThoseUnderTheSameIdentifier)
{
    serve();
    Pending<bool> first{center.add(requestOf("a"), guardTime)};
    Pending<bool> second{center.add(requestOf("a"), guardTime)};
    ASSERT_TRUE(first.get() && second.get());
    ASSERT_EQ(last().id, 2U) << "neither knew of the other";
    ASSERT_TRUE(add(requestOf("a")));
    EXPECT_EQ(last().replaces, 2U);
}

TEST_F(DesktopNotificationsTest, ReplacesNothingThatIsGone)
{
    serve();
    for (const uint reason : {1U, 2U, 3U}) {
        ASSERT_TRUE(add(requestOf("a")));
        server->close(last().id, reason);
        settle();
        ASSERT_TRUE(add(requestOf("a")));
        EXPECT_EQ(last().replaces, 0U) << reason;
        server->close(last().id, 2);
        settle();
    }
    ASSERT_TRUE(add(requestOf("a")));
    serve();
    ASSERT_TRUE(add(requestOf("a")));
    EXPECT_EQ(last().replaces, 0U);
}

TEST_F(DesktopNotificationsTest, TakesTheNumbersOfAServerForItsOwn)
{
    serve();
    ASSERT_TRUE(add(requestOf("a")));
    serve();
    ASSERT_EQ(authorization(), Authorization::authorized);
    server->invoke(1, QStringLiteral("default"));
    settle();
    EXPECT_THAT(listener.opened, IsEmpty());
}

TEST_F(DesktopNotificationsTest, SaysWhenANotificationWasRefused)
{
    serve().behave(Manner::refuses);
    EXPECT_FALSE(add(requestOf("a")));
    server->behave(Manner::answers);
    EXPECT_TRUE(add(requestOf("a")));
}

TEST_F(DesktopNotificationsTest, GivesUpOnAServerThatNeverAnswers)
{
    serve().behave(Manner::isMute);
    EXPECT_FALSE(await(center.add(requestOf("a"), 200ms)));
    EXPECT_THAT(server->taken(), SizeIs(1)) << "it is not sent twice";
    server->behave(Manner::answers);
    EXPECT_TRUE(add(requestOf("b")));
}

TEST_F(DesktopNotificationsTest, TurnsToTheSuccessorOfAServerThatLeavesInTheMidstOfIt)
{
    serve().behave(Manner::leaves);
    const NotificationServerStandIn successor{bus.address(), {}};
    EXPECT_TRUE(add(requestOf("a")));
    ASSERT_THAT(successor.taken(), SizeIs(1));
    EXPECT_THAT(successor.taken().front().actions, IsEmpty()) << "it is asked what it can do";
}

TEST_F(DesktopNotificationsTest, TriesNoThirdServerWhenTwoHaveLeft)
{
    serve().behave(Manner::leaves);
    NotificationServerStandIn second{bus.address(), {}};
    second.behave(Manner::leaves);
    const NotificationServerStandIn third{bus.address(), {}};
    EXPECT_FALSE(add(requestOf("a")));
    EXPECT_THAT(third.taken(), IsEmpty());
    EXPECT_TRUE(add(requestOf("b")));
}

TEST_F(DesktopNotificationsTest, TurnsToTheSuccessorOfAServerThatLeavesOnceItWasAsked)
{
    serve().behave(Manner::leavesOnceAsked);
    const NotificationServerStandIn successor{bus.address(), {}};
    ASSERT_EQ(authorization(), Authorization::authorized);
    EXPECT_TRUE(add(requestOf("a")));
    EXPECT_THAT(successor.taken(), SizeIs(1));
}

TEST_F(DesktopNotificationsTest, ReplacesNothingOfTheSuccessorOfAServerThatLeavesOnceItWasTold)
{
    serve().behave(Manner::leavesOnceTold);
    const NotificationServerStandIn successor{bus.address(), {}};
    ASSERT_TRUE(add(requestOf("a")));
    ASSERT_THAT(successor.taken(), IsEmpty());
    ASSERT_TRUE(add(requestOf("a")));
    ASSERT_THAT(successor.taken(), SizeIs(1));
    EXPECT_EQ(successor.taken().front().replaces, 0U);
}

TEST_F(DesktopNotificationsTest, TurnsToTheServerOfABusThatWasRestarted)
{
    // Without the identifier of the bus, as desktops name theirs.
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    DesktopNotifications lasting{address, [] { return QStringLiteral("Open"); }};
    serve();
    ASSERT_TRUE(await(lasting.add(requestOf("a"), guardTime)));
    bus.end();
    server.reset();
    GuardedProcess again({"dbus-daemon", "--nofork", "--nopidfile", "--print-address=1",
                          "--config-file=" + (bus.home() / "bus.conf").string()});
    ASSERT_FALSE(again.line().empty());
    // So that the server has the name on the new bus that the other one had on the old bus.
    const QString first = QStringLiteral("the first on the bus");
    ASSERT_TRUE(QDBusConnection::connectToBus(address, first).isConnected());
    const NotificationServerStandIn successor{address, everything};
    ASSERT_TRUE(await(lasting.add(requestOf("a"), guardTime)));
    EXPECT_EQ(successor.taken().back().replaces, 0U);
    EXPECT_EQ(successor.timesAsked(), 1);
    QDBusConnection::disconnectFromBus(first);
}

TEST_F(DesktopNotificationsTest, TakesSeveralAtOnceFromTheBeginning)
{
    serve();
    Pending<bool> first{center.add(requestOf("a"), guardTime)};
    Pending<bool> second{center.add(requestOf("b"), guardTime)};
    EXPECT_TRUE(first.get());
    EXPECT_TRUE(second.get());
    server->invoke(1, QStringLiteral("default"));
    server->invoke(2, QStringLiteral("default"));
    settle();
    EXPECT_THAT(listener.opened, testing::UnorderedElementsAre("https://a/a", "https://a/b"));
}

TEST_F(DesktopNotificationsTest, GivesUpWhenAServerLeavesWithoutASuccessor)
{
    serve().behave(Manner::leaves);
    EXPECT_FALSE(add(requestOf("a")));
    serve();
    EXPECT_TRUE(add(requestOf("a")));
}

TEST_F(DesktopNotificationsTest, HandsOverManyInTheirOrder)
{
    serve();
    for (int i = 0; i < 200; ++i) {
        ASSERT_TRUE(add(requestOf(std::to_string(i))));
    }
    ASSERT_THAT(server->taken(), SizeIs(200));
    for (int i = 0; i < 200; ++i) {
        EXPECT_EQ(server->taken().at(static_cast<std::size_t>(i)).summary,
                  QStringLiteral("Title of %1").arg(i));
    }
}

} // namespace
} // namespace roost::test
