#include "tests/support/Dunst.h"

#include "platform/DesktopNotifications.h"
#include "tests/platform/PollUntil.h"
#include "tests/support/Await.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using Request = NotificationCenter::Request;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

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
    std::optional<Dunst> dunst{std::in_place, bus, display};
    DesktopNotifications center{bus.address(), [] { return QStringLiteral("Open"); }};
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
    // It is drawn a moment after it was taken.
    ASSERT_TRUE(pollUntil([&] {
        dunst->click();
        return !listener.opened.empty();
    }));
    EXPECT_THAT(listener.opened, ElementsAre("https://roost.example/roost/overview"));
}

TEST_F(DunstTest, ReplacesANotificationOfTheSameIdentifierUntilItIsClosed)
{
    ASSERT_TRUE(add(failed));
    const std::string first = saidOf("id", dunst->shown());
    ASSERT_FALSE(first.empty());
    ASSERT_TRUE(add(failed));
    EXPECT_EQ(saidOf("id", dunst->shown()), first);
    dunst->closeAll();
    // It is told in the order in which things happened: closing, then the answer to another question.
    Request other = failed;
    other.identifier = "p|failed:2";
    ASSERT_TRUE(add(other));
    ASSERT_NE(saidOf("id", dunst->shown()), first);
    ASSERT_TRUE(add(failed));
    EXPECT_NE(saidOf("id", dunst->shown()), first);
}

TEST_F(DunstTest, ReplacesWhatAnEarlierProcessHasShownAndNothingElse)
{
    // Texts differ, since dunst shows equal ones once.
    ASSERT_TRUE(add(failed));
    DesktopNotifications later{bus.address(), [] { return QStringLiteral("Open"); }};
    Request again = failed;
    again.body = "The same, said otherwise";
    ASSERT_TRUE(await(later.add(again, guardTime)));
    EXPECT_EQ(dunst->count(), 1U);
    Request other = failed;
    other.identifier = "p|failed:2";
    other.body = "Another one of that kind";
    ASSERT_TRUE(await(later.add(other, guardTime)));
    EXPECT_EQ(dunst->count(), 2U);
}

TEST_F(DunstTest, IsFoundAgainAfterARestart)
{
    ASSERT_TRUE(add(failed));
    dunst.reset();
    bus.awaitName(Dunst::service, false);
    EXPECT_FALSE(add(failed));
    EXPECT_EQ(await(center.authorization(guardTime)), NotificationCenter::Authorization::denied);
    dunst.emplace(bus, display);
    EXPECT_EQ(await(center.authorization(guardTime)), NotificationCenter::Authorization::authorized);
    ASSERT_TRUE(add(failed));
    EXPECT_EQ(saidOf("summary", dunst->shown()), "A post did not go out");
    EXPECT_THAT(listener.opened, IsEmpty());
}

} // namespace
} // namespace roost::test
