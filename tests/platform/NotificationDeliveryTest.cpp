#include "app/AppSettings.h"
#include "notify/NotificationContent.h"
#include "notify/NotificationService.h"
#include "platform/DesktopNotifications.h"
#include "present/SampleData.h"
#include "tests/platform/PollUntil.h"
#include "tests/support/Await.h"
#include "tests/support/Dunst.h"
#include "tests/support/EventLoopWatch.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/MemorySettings.h"
#include "tests/support/NotificationServerStandIn.h"

#include <gmock/gmock.h>

#include <thread>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const QUrl base{QStringLiteral("https://roost.example")};
const std::string overview = "https://roost.example/roost/overview";
const QStringList everything{QStringLiteral("body"), QStringLiteral("actions"),
                             QStringLiteral("body-markup")};

PlannedEvent failure(const std::string& id, const std::string& text)
{
    return {RoostEvent::PostFailed{RoostSnapshot::Posts::Next{id, Date{}, text, {}}}, "p|failed:" + id};
}

std::vector<PlannedEvent> oneOfEach()
{
    const RoostSnapshot::BestPost best{"x", "X", 12'345, "Best", WebURL::parse("https://social.example/1")};
    const RoostSnapshot::Posts::Next post{"1", Date{}, "Post", {}};
    return {{RoostEvent::Milestone{10'000, best}, "p|milestone"},
            {RoostEvent::NewBest{best, 1}, "p|best"},
            {RoostEvent::PostWentOut{post}, "p|sent:1"},
            failure("1", "Post"),
            {RoostEvent::NewFollowers{5, 10}, "p|followers:10"}};
}

/// What is due after a long absence: event n is of n followers.
std::vector<PlannedEvent> flood(const std::string& name)
{
    std::vector<PlannedEvent> events;
    for (std::int64_t n = 0; n < 200; ++n) {
        events.push_back({RoostEvent::NewFollowers{1, n}, name + "|followers:" + std::to_string(n)});
    }
    return events;
}

std::vector<std::string> bodiesOfFlood()
{
    std::vector<std::string> bodies;
    for (int n = 0; n < 200; ++n) {
        bodies.push_back("Total: " + std::to_string(n));
    }
    return bodies;
}

/// The whole way from planned events to the user's browser.
class NotificationDelivery : public testing::Test {
protected:
    NotificationDelivery() { AppSettings::registerDefaults(settings); }

    QCoro::Task<> delivering(std::vector<PlannedEvent> events)
    {
        return service.deliver(std::move(events), snapshot, format, base);
    }

    void deliver(std::vector<PlannedEvent> events)
    {
        auto task = delivering(std::move(events));
        ASSERT_TRUE(runUntil([&] { return task.isReady(); }));
    }

    LogCatcher log;
    PrivateBus bus;
    MemorySettings settings;
    RoostSnapshot snapshot = SampleData::minimal(Date{});
    RoostFormat format{{"en_US", "UTC", "UTC"}};
    std::vector<std::string> opened;
    DesktopNotifications center{bus.address(), [] { return QStringLiteral("Open"); }};
    NotificationService service{center, settings,
                                [this](const WebURL& url) { opened.push_back(url.text()); }};
};

class NotificationDeliveryToDunst : public NotificationDelivery {
protected:
    std::vector<std::string> shownSummaries(int count)
    {
        std::vector<std::string> summaries;
        for (int i = 0; i < count; ++i) {
            summaries.push_back(saidOf("summary", dunst.shown()));
        }
        return summaries;
    }

    PrivateDisplay display;
    Dunst dunst{bus, display};
};

TEST_F(NotificationDeliveryToDunst, ShowsEveryKindInItsWords)
{
    deliver(oneOfEach());
    for (const PlannedEvent& planned : oneOfEach()) {
        const auto wanted = NotificationContent::make(planned.event, snapshot, format, base);
        const std::vector<std::string> lines = dunst.shown();
        EXPECT_EQ(saidOf("summary", lines), wanted.title);
        const std::size_t firstLine = wanted.body.find('\n');
        EXPECT_EQ(saidOf("body", lines),
                  firstLine == std::string::npos ? wanted.body : "'" + wanted.body.substr(0, firstLine));
    }
}

TEST_F(NotificationDeliveryToDunst, ShowsWhatPeopleWroteAsTheyWroteIt)
{
    const RoostSnapshot::Posts::Next post{"1", Date{}, "<b>50%1</b> %@ & &lt; \u0001<img src=\"x\"", {}};
    deliver({{RoostEvent::PostWentOut{post}, "p|sent:1"}});
    EXPECT_EQ(saidOf("body", dunst.shown()),
              "&lt;b&gt;50%1&lt;/b&gt; %@ &amp; &amp;lt; &lt;img src=&quot;x&quot;");
}

TEST_F(NotificationDeliveryToDunst, OpensThePageOfWhatIsClicked)
{
    const auto clickUntilOpened = [this](std::size_t count) {
        return pollUntil([&] {
            dunst.click();
            return opened.size() >= count;
        });
    };
    deliver({oneOfEach().front()});
    ASSERT_TRUE(clickUntilOpened(1));
    EXPECT_THAT(opened, ElementsAre("https://social.example/1"));
    // A click too many may have fallen on nothing; none falls on what comes now.
    deliver({failure("1", "Post")});
    ASSERT_TRUE(clickUntilOpened(2));
    EXPECT_THAT(opened, ElementsAre("https://social.example/1", overview));
}

TEST_F(NotificationDeliveryToDunst, DoesNothingOnAClickThatLeadsElsewhere)
{
    for (const char* url : {"mailto:a@b.example", "roost/overview", "file:///etc/passwd"}) {
        ASSERT_TRUE(await(center.add({url, url, "Body", "postFailed", {{"url", url}}}, guardTime)));
        ASSERT_TRUE(pollUntil([&] {
            dunst.click();
            return dunst.count() == 0;
        }));
    }
    // What is clicked later is heard later.
    deliver({failure("1", "Post")});
    ASSERT_TRUE(pollUntil([&] {
        dunst.click();
        return !opened.empty();
    }));
    EXPECT_THAT(opened, ElementsAre(overview));
}

TEST_F(NotificationDeliveryToDunst, LeavesOutWhatTheUserSwitchedOff)
{
    settings.setBoolean("notify.followers", false);
    settings.setBoolean("notify.milestones", false);
    deliver(oneOfEach());
    EXPECT_THAT(shownSummaries(3),
                ElementsAre("New best post of the week", "Post went out", "A post did not go out"));
    settings.setBoolean("notify.followers", true);
    deliver({oneOfEach().back()});
    EXPECT_THAT(shownSummaries(1), ElementsAre("New followers: +5"));
}

TEST_F(NotificationDeliveryToDunst, BringsAFloodInOrderAndKeepsTheLoopTurning)
{
    int rounds = 0;
    const auto longest = waitInTheBestRound(100ms, [&] {
        std::vector<std::string> bodies;
        EventLoopWatch watch;
        // Beside the loop: dunst waits when nobody reads what it prints.
        std::jthread reader([&] {
            for (int n = 0; n < 200; ++n) {
                const std::vector<std::string> lines = dunst.shown();
                if (lines.empty()) {
                    return;
                }
                bodies.push_back(saidOf("body", lines));
            }
        });
        auto task = delivering(flood(std::to_string(++rounds)));
        // A busy machine may take a second for what dunst has to draw after each.
        if (!watch.runUntil([&] { return task.isReady(); }, 4 * guardTime)) {
            throw std::runtime_error("the flood did not end");
        }
        reader.join();
        EXPECT_EQ(bodies, bodiesOfFlood());
        EXPECT_EQ(dunst.count(), 200U);
        dunst.closeAll();
        return watch.longestWait();
    });
    EXPECT_LE(longest, 100ms);
}

TEST_F(NotificationDeliveryToDunst, GivesUpWhileItHangsAndGoesOnAfterwards)
{
    ASSERT_EQ(await(center.authorization(guardTime)), NotificationCenter::Authorization::authorized);
    dunst.freeze();
    {
        NotificationService impatient{center, settings, [](const WebURL&) {}, 50ms};
        auto task = impatient.deliver(oneOfEach(), snapshot, format, base);
        EXPECT_TRUE(runUntil([&] { return task.isReady(); }));
    }
    dunst.thaw();
    // It has had them all the time.
    EXPECT_THAT(shownSummaries(5), testing::Each(testing::Not(IsEmpty())));
    deliver({failure("2", "Post")});
    EXPECT_THAT(shownSummaries(1), ElementsAre("A post did not go out"));
}

TEST_F(NotificationDelivery, GivesUpOneEventAfterAnotherOnAServerThatNeverAnswers)
{
    NotificationServerStandIn server{bus.address(), everything};
    ASSERT_EQ(await(center.authorization(guardTime)), NotificationCenter::Authorization::authorized);
    server.behave(NotificationServerStandIn::Manner::isMute);
    NotificationService impatient{center, settings, [](const WebURL&) {}, 50ms};
    const auto longest = waitInTheBestRound(100ms, [&] {
        EventLoopWatch watch;
        const std::size_t before = server.taken().size();
        auto task = impatient.deliver(oneOfEach(), snapshot, format, base);
        EXPECT_TRUE(watch.runUntil([&] { return task.isReady(); }));
        EXPECT_EQ(server.taken().size(), before + 5) << "each is tried, once";
        return watch.longestWait();
    });
    EXPECT_LE(longest, 100ms);
}

TEST_F(NotificationDelivery, BringsAFloodOneAfterAnother)
{
    NotificationServerStandIn server{bus.address(), everything};
    deliver(flood("p"));
    std::vector<std::string> bodies;
    for (const auto& notification : server.taken()) {
        bodies.push_back(notification.body.toStdString());
    }
    EXPECT_EQ(bodies, bodiesOfFlood());
    EXPECT_EQ(server.mostWaiting(), 1);
}

TEST_F(NotificationDelivery, IsSilentWhereNobodyShowsNotifications)
{
    deliver(oneOfEach());
    bus.end();
    deliver(oneOfEach());
    EXPECT_THAT(log.lines(), SizeIs(10));
    for (const LogCatcher::Line& line : log.lines()) {
        EXPECT_TRUE(line.message.startsWith(QLatin1String("notification due: ")))
            << line.message.toStdString();
    }
    EXPECT_THAT(opened, IsEmpty());
}

} // namespace
} // namespace roost::test
