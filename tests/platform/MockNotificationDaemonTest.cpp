#include "tests/platform/MockNotificationDaemon.h"

#include "notify/NotificationService.h"
#include "platform/DesktopNotifications.h"
#include "tests/support/Await.h"
#include "tests/support/MemorySettings.h"

#include <gmock/gmock.h>

#include <QDBusConnectionInterface>

namespace roost::test {
namespace {

using Request = NotificationCenter::Request;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

Request requestOf(const std::string& identifier, const std::string& url)
{
    return {identifier, "Title", "<b>1</b> & 2", "postFailed", {{"url", url}}};
}

QVariantMap hintsWith(const QVariantMap& more = {})
{
    QVariantMap hints{{QStringLiteral("category"), QStringLiteral("postFailed")},
                      {QStringLiteral("desktop-entry"), QStringLiteral("world.brisken.roost.mac")},
                      {QStringLiteral("sound-name"), QStringLiteral("message-new-instant")}};
    hints.insert(more);
    return hints;
}

class MockNotificationDaemonTest : public testing::Test {
protected:
    bool add(const std::string& identifier, const std::string& url = "https://a.example/")
    {
        return await(center.add(requestOf(identifier, url), guardTime));
    }

    PrivateBus bus;
    MemorySettings settings;
    DesktopNotifications center{bus.address(), [] { return QStringLiteral("Öffnen"); }};
    std::vector<std::string> opened;
    NotificationService service{center, settings,
                                [this](const WebURL& url) { opened.push_back(url.text()); }};
};

TEST_F(MockNotificationDaemonTest, IsToldAllThatItCanMakeUseOf)
{
    const MockNotificationDaemon daemon{
        bus,
        {QStringLiteral("body"), QStringLiteral("body-markup"), QStringLiteral("actions"),
         QStringLiteral("sound"), QStringLiteral("x-dunst-stack-tag"), QStringLiteral("x-canonical-append")}};
    ASSERT_TRUE(add("p|failed:1"));
    const auto taken = daemon.taken();
    ASSERT_THAT(taken, SizeIs(1));
    EXPECT_EQ(taken[0].summary, QStringLiteral("Title"));
    EXPECT_EQ(taken[0].body, QStringLiteral("&lt;b&gt;1&lt;/b&gt; &amp; 2"));
    EXPECT_THAT(taken[0].actions, ElementsAre(QStringLiteral("default"), QStringLiteral("Öffnen"),
                                              QStringLiteral("open"), QStringLiteral("Öffnen")));
    EXPECT_EQ(taken[0].hints, hintsWith({{QStringLiteral("x-dunst-stack-tag"), QStringLiteral("p|failed:1")},
                                         {QStringLiteral("x-canonical-append"), QStringLiteral("allowed")}}));
}

TEST_F(MockNotificationDaemonTest, IsToldNothingThatItDoesNotUnderstand)
{
    const MockNotificationDaemon daemon{bus, {QStringLiteral("body")}};
    ASSERT_TRUE(add("p|failed:1"));
    const auto taken = daemon.taken();
    ASSERT_THAT(taken, SizeIs(1));
    EXPECT_EQ(taken[0].body, QStringLiteral("<b>1</b> & 2"));
    EXPECT_THAT(taken[0].actions, IsEmpty());
    EXPECT_EQ(taken[0].hints, hintsWith());
}

TEST_F(MockNotificationDaemonTest, IsToldWhatARepeatedIdentifierReplaces)
{
    constexpr uint dismissed = 2;
    const MockNotificationDaemon daemon{bus, {QStringLiteral("body")}};
    ASSERT_TRUE(add("a") && add("b") && add("a") && add("b"));
    daemon.close(2, dismissed);
    ASSERT_TRUE(add("c") && add("b") && add("a"));
    std::vector<uint> replaced;
    for (const auto& notification : daemon.taken()) {
        replaced.push_back(notification.replaces);
    }
    EXPECT_THAT(replaced, ElementsAre(0U, 0U, 1U, 2U, 0U, 0U, 1U));
}

TEST(MockNotificationDaemon, IsStartedByTheBusWhereItIsInstalled)
{
    const PrivateBus bus(PrivateBus::Activation::installed);
    const std::filesystem::path folder = bus.dataHome() / "dbus-1" / "services";
    std::filesystem::create_directories(folder);
    putBytes(folder / "org.freedesktop.Notifications.service",
             "[D-BUS Service]\nName=org.freedesktop.Notifications\n"
             "Exec=/usr/bin/python3 -m dbusmock --session --template notification_daemon\n");
    ASSERT_FALSE(bus.connection().interface()->call(QStringLiteral("ReloadConfig")).type() ==
                 QDBusMessage::ErrorMessage);
    DesktopNotifications center{bus.address(), [] { return QStringLiteral("Open"); }};
    EXPECT_EQ(await(center.authorization(guardTime)), NotificationCenter::Authorization::authorized);
    EXPECT_TRUE(await(center.add(requestOf("a", "https://a.example/"), guardTime)));
}

TEST_F(MockNotificationDaemonTest, HasItsNotificationsOpened)
{
    const MockNotificationDaemon daemon{bus, {QStringLiteral("actions")}};
    ASSERT_TRUE(add("a", "https://a.example/1") && add("b", "mailto:a@b.example") &&
                add("c", "http://a.example/3"));
    daemon.invoke(2, QStringLiteral("default"));
    daemon.invoke(3, QStringLiteral("open"));
    daemon.invoke(1, QStringLiteral("default"));
    ASSERT_TRUE(add("d"));
    EXPECT_THAT(opened, ElementsAre("http://a.example/3", "https://a.example/1"));
}

} // namespace
} // namespace roost::test
