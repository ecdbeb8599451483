#include "notify/NotificationService.h"

#include "notify/NotificationContent.h"
#include "notify/NotificationKind.h"
#include "present/SampleData.h"
#include "tests/notify/ScriptedNotificationCenter.h"
#include "tests/support/EventLoopWatch.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/MemorySettings.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using Authorization = NotificationCenter::Authorization;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using UserInfo = NotificationCenter::UserInfo;

const QUrl base{QStringLiteral("https://roost.example")};

/// One event of each kind, in their order, keyed "0", "1", …
std::vector<PlannedEvent> oneOfEach()
{
    const RoostSnapshot::BestPost best{"x", "X", 12'345, "Best", std::nullopt};
    const RoostSnapshot::Posts::Next post{"id", Date{}, "Post", {}};
    return {{RoostEvent::Milestone{10'000, best}, "0"},
            {RoostEvent::NewBest{best, 1}, "1"},
            {RoostEvent::PostWentOut{post}, "2"},
            {RoostEvent::PostFailed{post}, "3"},
            {RoostEvent::NewFollowers{5, 10}, "4"}};
}

class NotificationServiceTest : public testing::Test {
protected:
    NotificationServiceTest()
    {
        for (const NotificationKind& kind : notificationKinds) {
            settings.setBoolean(kind.switchKey, true);
        }
    }

    QCoro::Task<> delivering(std::vector<PlannedEvent> events, std::stop_token token = {})
    {
        return service.deliver(std::move(events), snapshot, format, base, token);
    }

    void deliver(std::vector<PlannedEvent> events)
    {
        auto task = delivering(std::move(events));
        ASSERT_TRUE(runUntil([&] { return task.isReady(); }));
    }

    std::vector<std::string> identifiers() const
    {
        std::vector<std::string> all;
        for (const auto& request : center.added) {
            all.push_back(request.identifier);
        }
        return all;
    }

    void open(const UserInfo& userInfo) const { center.delegate->userOpened(userInfo); }

    RoostSnapshot snapshot = SampleData::minimal(Date{});
    RoostFormat format{{"en_US", "UTC", "UTC"}};
    ScriptedNotificationCenter center;
    MemorySettings settings;
    std::vector<std::string> opened;
    NotificationService service{center, settings,
                                [this](const WebURL& url) { opened.push_back(url.text()); }};
    LogCatcher log;
};

TEST_F(NotificationServiceTest, HandsEachEventToTheCenterInOrder)
{
    deliver(oneOfEach());
    EXPECT_THAT(identifiers(), ElementsAre("0", "1", "2", "3", "4"));
    EXPECT_THAT(center.calls, ElementsAre("authorization", "add", "add", "add", "add", "add"));
    std::vector<std::string> threads;
    for (std::size_t i = 0; i < center.added.size(); ++i) {
        const auto wanted = NotificationContent::make(oneOfEach()[i].event, snapshot, format, base);
        EXPECT_EQ(center.added[i].title, wanted.title);
        EXPECT_EQ(center.added[i].body, wanted.body);
        EXPECT_EQ(center.added[i].userInfo, (UserInfo{{"url", wanted.url->text()}}));
        threads.push_back(center.added[i].threadIdentifier);
    }
    EXPECT_THAT(threads, ElementsAre("milestones", "bestPost", "postWentOut", "postFailed", "followers"));
}

TEST_F(NotificationServiceTest, LogsEveryEventByItsKindWhateverBecomesOfIt)
{
    const QList<QString> wanted{
        QStringLiteral("notification due: milestones"), QStringLiteral("notification due: bestPost"),
        QStringLiteral("notification due: postWentOut"), QStringLiteral("notification due: postFailed"),
        QStringLiteral("notification due: followers")};
    center.authorized = Authorization::denied;
    settings.file.clear();
    auto task = delivering(oneOfEach());
    EXPECT_EQ(log.messages("world.brisken.roost.mac.sync"), wanted) << "before the center has answered";
    EXPECT_EQ(log.lines().front().level, QtInfoMsg);
    ASSERT_TRUE(runUntil([&] { return task.isReady(); }));
    EXPECT_EQ(log.lines().size(), wanted.size());
}

TEST_F(NotificationServiceTest, AddsNothingWithoutPermissionAndAsksForNone)
{
    for (const Authorization authorized : {Authorization::denied, Authorization::notDetermined}) {
        center.authorized = authorized;
        center.calls.clear();
        deliver(oneOfEach());
        EXPECT_THAT(center.calls, ElementsAre("authorization"));
    }
    center.authorized = Authorization::provisional;
    deliver(oneOfEach());
    EXPECT_THAT(center.added, SizeIs(5));
}

TEST_F(NotificationServiceTest, DoesNothingForNoEvents)
{
    deliver({});
    EXPECT_THAT(center.calls, IsEmpty());
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(NotificationServiceTest, LeavesOutTheKindThatIsSwitchedOffAndNoOther)
{
    for (std::size_t off = 0; off < notificationKinds.size(); ++off) {
        center.added.clear();
        settings.setBoolean(notificationKinds[off].switchKey, false);
        deliver(oneOfEach());
        settings.setBoolean(notificationKinds[off].switchKey, true);
        std::vector<std::string> wanted{"0", "1", "2", "3", "4"};
        wanted.erase(wanted.begin() + static_cast<std::ptrdiff_t>(off));
        EXPECT_EQ(identifiers(), wanted) << notificationKinds[off].switchKey;
    }
}

TEST_F(NotificationServiceTest, LooksAtASwitchWhenItsEventComesUp)
{
    center.onRequest = [this] { settings.setBoolean("notify.followers", false); };
    deliver(oneOfEach());
    EXPECT_THAT(identifiers(), ElementsAre("0", "1", "2", "3"));
}

TEST_F(NotificationServiceTest, GoesOnAfterAnEventThatTheCenterDoesNotTake)
{
    center.takes = [](const auto& request) { return request.identifier != "1"; };
    deliver(oneOfEach());
    EXPECT_THAT(identifiers(), ElementsAre("0", "1", "2", "3", "4"));
    EXPECT_EQ(log.lines().size(), 5);
}

TEST_F(NotificationServiceTest, GivesTheCenterFiveSecondsForEachQuestionUnlessToldOtherwise)
{
    deliver(oneOfEach());
    EXPECT_THAT(center.limits, SizeIs(6));
    EXPECT_THAT(center.limits, testing::Each(std::chrono::seconds{5}));
    center.limits.clear();
    NotificationService other{center, settings, [](const WebURL&) {}, std::chrono::milliseconds{70}};
    auto task = other.deliver(oneOfEach(), snapshot, format, base);
    ASSERT_TRUE(runUntil([&] { return task.isReady(); }));
    EXPECT_THAT(center.limits, SizeIs(6));
    EXPECT_THAT(center.limits, testing::Each(std::chrono::milliseconds{70}));
}

TEST_F(NotificationServiceTest, DeliversAFloodOneAfterAnotherAndKeepsTheLoopTurning)
{
    std::vector<PlannedEvent> flood;
    std::vector<std::string> wanted;
    for (int i = 0; i < 200; ++i) {
        flood.push_back({RoostEvent::NewFollowers{1, i}, std::to_string(i)});
        wanted.push_back(std::to_string(i));
    }
    constexpr std::chrono::milliseconds limit{100};
    const auto longest = waitInTheBestRound(limit, [&] {
        center.added.clear();
        EventLoopWatch watch;
        auto task = delivering(flood);
        EXPECT_TRUE(watch.runUntil([&] { return task.isReady(); }));
        EXPECT_EQ(identifiers(), wanted);
        EXPECT_EQ(center.busiest, 1);
        return watch.longestWait();
    });
    EXPECT_LE(longest, limit);
}

TEST_F(NotificationServiceTest, StopsBeforeTheNextEvent)
{
    std::stop_source stop;
    center.onRequest = [this, &stop] {
        if (center.added.size() == 2) {
            stop.request_stop();
        }
    };
    auto task = delivering(oneOfEach(), stop.get_token());
    ASSERT_TRUE(runUntil([&] { return task.isReady(); }));
    EXPECT_THAT(identifiers(), ElementsAre("0", "1"));
}

TEST_F(NotificationServiceTest, OpensThePageOfANotification)
{
    open({{"url", "https://a.example/1"}});
    open({{"url", "HTTP://a.example"}, {"more", "x"}});
    EXPECT_THAT(opened, ElementsAre("https://a.example/1", "HTTP://a.example"));
}

TEST_F(NotificationServiceTest, OpensNothingElse)
{
    open({});
    open({{"URL", "https://a.example"}});
    for (const char* url :
         {"", "mailto:a@b.example", "file:///etc/passwd", "/roost/overview", "roost/overview", "//a.example",
          "javascript:alert(1)", "briskenroost://callback", "https:", "https://"}) {
        open({{"url", url}});
    }
    EXPECT_THAT(opened, IsEmpty());
}

TEST(NotificationService, HearsNothingMoreWhenItIsGone)
{
    ScriptedNotificationCenter center;
    const MemorySettings settings;
    {
        const NotificationService service{center, settings, [](const WebURL&) {}};
        EXPECT_NE(center.delegate, nullptr);
    }
    EXPECT_EQ(center.delegate, nullptr);
}

} // namespace
} // namespace roost::test
