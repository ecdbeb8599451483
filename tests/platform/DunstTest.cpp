#include "platform/DesktopNotifications.h"
#include "tests/support/Await.h"
#include "tests/support/GuardedProcess.h"
#include "tests/support/PrivateBus.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using Request = NotificationCenter::Request;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

const QString service = QStringLiteral("org.freedesktop.Notifications");

/// An X server without a screen, which is the display of this process as long as it lives.
class PrivateDisplay {
public:
    PrivateDisplay()
        : server_({"Xvfb", "-displayfd", "1", "-screen", "0", "800x600x24", "-nolisten", "tcp"}),
          display_("DISPLAY", QByteArray::fromStdString(":" + server_.line()))
    {
    }

private:
    GuardedProcess server_;
    ScopedVariable display_;
};

/// A real notification server, which prints what it shows.
class Dunst {
public:
    explicit Dunst(const PrivateBus& bus)
        : bus_(bus),
          process_({"dunst", "-config", configurationIn(bus.home()), "-print"})
    {
        bus.awaitName(service, true);
    }

    /// The lines about the next notification, without what they begin with. Texts of several lines are too.
    std::vector<std::string> shown()
    {
        std::vector<std::string> lines;
        for (std::string line = process_.line(); !line.empty() && line != "}"; line = process_.line()) {
            lines.push_back(line.substr(std::min(line.find_first_not_of('\t'), line.size())));
        }
        return lines;
    }

    /// Does what a click on the notification at that place does.
    void act(uint place) const { command(QStringLiteral("NotificationAction"), {place}); }
    void closeAll() const { command(QStringLiteral("NotificationCloseAll"), {}); }

private:
    static std::string configurationIn(const std::filesystem::path& folder)
    {
        const std::filesystem::path file = folder / "dunstrc";
        putBytes(file, "[global]\n markup = full\n mouse_left_click = do_action, close_current\n"
                       " notification_limit = 0\n");
        return file.string();
    }

    void command(const QString& method, const QVariantList& arguments) const
    {
        QDBusMessage call =
            QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/Notifications"),
                                           QStringLiteral("org.dunstproject.cmd0"), method);
        call.setArguments(arguments);
        const QDBusMessage answer = bus_.connection().call(call);
        if (answer.type() != QDBusMessage::ReplyMessage) {
            throw std::runtime_error("dunst refuses " + method.toStdString());
        }
    }

    const PrivateBus& bus_;
    GuardedProcess process_;
};

/// Remembers what the user opened.
struct Listener final : NotificationCenter::Delegate {
    void userOpened(NotificationCenter::UserInfo userInfo) override { opened.push_back(userInfo.at("url")); }

    std::vector<std::string> opened;
};

class DunstTest : public testing::Test {
protected:
    DunstTest() { center.setDelegate(&listener); }

    bool add(const Request& request) { return await(center.add(request, guardTime)); }

    PrivateBus bus;
    PrivateDisplay display;
    std::optional<Dunst> dunst{bus};
    DesktopNotifications center{bus.address(), QStringLiteral("Open")};
    Listener listener;
    const Request failed{"p|failed:1",
                         "A post did not go out",
                         "“<b>Sale</b> & more”\nOpen Brisken Roost to see why.",
                         "postFailed",
                         {{"url", "https://roost.example/roost/overview"}}};
};

TEST_F(DunstTest, ShowsWhatItIsHanded)
{
    ASSERT_TRUE(add(failed));
    EXPECT_THAT(dunst->shown(),
                IsSupersetOf({"appname: 'Brisken Roost'", "summary: 'A post did not go out'",
                              "body: '“&lt;b&gt;Sale&lt;/b&gt; &amp; more”",
                              "Open Brisken Roost to see why.'", "desktop_entry: 'world.brisken.roost.mac'",
                              "category: postFailed", "\"default\": \"Open\"", "\"open\": \"Open\""}));
}

TEST_F(DunstTest, TellsThatANotificationWasClicked)
{
    ASSERT_TRUE(add(failed));
    dunst->act(0);
    ASSERT_TRUE(runUntil([this] { return !listener.opened.empty(); }));
    EXPECT_THAT(listener.opened, ElementsAre("https://roost.example/roost/overview"));
}

TEST_F(DunstTest, ReplacesANotificationOfTheSameIdentifierUntilItIsClosed)
{
    const auto idOf = [](const std::vector<std::string>& lines) {
        const auto found =
            std::ranges::find_if(lines, [](const std::string& line) { return line.starts_with("id: "); });
        return found == lines.end() ? std::string{} : *found;
    };
    ASSERT_TRUE(add(failed));
    const std::string first = idOf(dunst->shown());
    ASSERT_FALSE(first.empty());
    ASSERT_TRUE(add(failed));
    EXPECT_EQ(idOf(dunst->shown()), first);
    dunst->closeAll();
    // It is told in the order in which things happened: closing, then the answer to another question.
    Request other = failed;
    other.identifier = "p|failed:2";
    ASSERT_TRUE(add(other));
    ASSERT_NE(idOf(dunst->shown()), first);
    ASSERT_TRUE(add(failed));
    EXPECT_NE(idOf(dunst->shown()), first);
}

TEST_F(DunstTest, IsFoundAgainAfterARestart)
{
    ASSERT_TRUE(add(failed));
    dunst.reset();
    bus.awaitName(service, false);
    EXPECT_FALSE(add(failed));
    EXPECT_EQ(await(center.authorization(guardTime)), NotificationCenter::Authorization::denied);
    dunst.emplace(bus);
    EXPECT_EQ(await(center.authorization(guardTime)), NotificationCenter::Authorization::authorized);
    ASSERT_TRUE(add(failed));
    EXPECT_THAT(dunst->shown(), testing::Contains("summary: 'A post did not go out'"));
    EXPECT_THAT(listener.opened, IsEmpty());
}

} // namespace
} // namespace roost::test
