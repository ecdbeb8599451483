#include "platform/CallbackInbox.h"

#include "model/RoostLog.h"
#include "tests/support/LogCatcher.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Verdict = CallbackInbox::Verdict;

const std::string callback = "briskenroost://callback?code=canary-code&state=canary-state&iss=x";

/// An inbox, its log, and what got through it.
struct Inbox {
    LogCatcher log;
    CallbackInbox inbox{"briskenroost"};
    std::vector<std::string> taken;
    bool isTaking = true;

    void expect(const std::string& state = "canary-state", const std::string& scheme = "briskenroost")
    {
        inbox.expect({scheme, state, [this](std::string address) {
                          taken.push_back(std::move(address));
                          return isTaking;
                      }});
    }

    QList<QString> lines() const { return log.messages(RoostLog::auth().categoryName()); }
};

TEST(CallbackInbox, GivesTheCallbackThatIsExpected)
{
    Inbox box;
    box.expect();
    EXPECT_EQ(box.inbox.offer(callback), Verdict::taken);
    EXPECT_THAT(box.taken, ElementsAre(callback));
    EXPECT_THAT(box.log.lines(), IsEmpty());
}

TEST(CallbackInbox, TakesTheWhiteSpaceOfAPastedLineAway)
{
    Inbox box;
    box.expect();
    EXPECT_EQ(box.inbox.offer("  " + callback + " \r\n"), Verdict::taken);
    EXPECT_THAT(box.taken, ElementsAre(callback));
}

TEST(CallbackInbox, IgnoresACallbackThatNobodyWaitsFor)
{
    Inbox box;
    EXPECT_EQ(box.inbox.offer(callback), Verdict::ignored);
    EXPECT_THAT(box.lines(), ElementsAre(QStringLiteral("callback ignored: no sign-in is waiting")));
}

TEST(CallbackInbox, IgnoresASecondCallback)
{
    Inbox box;
    box.expect();
    EXPECT_EQ(box.inbox.offer(callback), Verdict::taken);
    EXPECT_EQ(box.inbox.offer(callback), Verdict::ignored);
    EXPECT_EQ(box.taken.size(), 1U);
    EXPECT_EQ(box.lines().size(), 1);
}

TEST(CallbackInbox, IgnoresACallbackOfAnotherAttemptAndGoesOnWaiting)
{
    Inbox box;
    box.expect("new-state");
    EXPECT_EQ(box.inbox.offer(callback), Verdict::ignored);
    EXPECT_THAT(box.taken, IsEmpty());
    EXPECT_THAT(box.lines(), ElementsAre(QStringLiteral("callback ignored: it belongs to another sign-in")));
    EXPECT_EQ(box.inbox.offer("briskenroost:?state=new-state"), Verdict::taken);
}

TEST(CallbackInbox, IgnoresACallbackWhoseFirstStateIsAnother)
{
    Inbox box;
    box.expect();
    for (const char* other :
         {"briskenroost:?code=1", "briskenroost:?state&state=canary-state",
          "briskenroost:?state=&state=canary-state", "briskenroost:?state=x&state=canary-state",
          "briskenroost:?STATE=canary-state", "briskenroost:#state=canary-state",
          "briskenroost:?state=canary-state%00", "briskenroost:?state=canary-stat"}) {
        EXPECT_EQ(box.inbox.offer(other), Verdict::ignored) << other;
    }
    EXPECT_THAT(box.taken, IsEmpty());
    EXPECT_EQ(box.lines().size(), 8);
}

TEST(CallbackInbox, TellsWhatIsNoCallbackAtAll)
{
    Inbox box;
    box.expect();
    for (const char* other : {"", "hello", "https://roost.example/?state=canary-state", "file:///etc/passwd",
                              "briskenroost-evil:?state=canary-state"}) {
        EXPECT_EQ(box.inbox.offer(other), Verdict::notCallback) << other;
    }
    EXPECT_EQ(box.lines().size(), 5);
    EXPECT_EQ(box.inbox.offer(callback), Verdict::taken) << "it goes on waiting";
}

TEST(CallbackInbox, TellsCallbacksByTheSchemeThatIsExpected)
{
    Inbox box;
    box.expect("s", "other");
    EXPECT_EQ(box.inbox.offer("briskenroost:?state=s"), Verdict::notCallback);
    EXPECT_EQ(box.inbox.offer("other:?state=s"), Verdict::taken);
}

TEST(CallbackInbox, IgnoresACallbackWhoseAttemptIsOver)
{
    Inbox box;
    box.expect();
    box.isTaking = false;
    EXPECT_EQ(box.inbox.offer(callback), Verdict::ignored);
    EXPECT_THAT(box.lines(), ElementsAre(QStringLiteral("callback ignored: its sign-in is over")));
    box.isTaking = true;
    EXPECT_EQ(box.inbox.offer(callback), Verdict::ignored) << "it waits no longer";
}

TEST(CallbackInbox, LogsNothingOfAnAddress)
{
    Inbox box;
    box.inbox.offer(callback);
    box.expect("other");
    box.inbox.offer(callback);
    box.inbox.offer("canary");
    EXPECT_EQ(box.lines().size(), 3);
    EXPECT_FALSE(box.log.saw(u"canary"));
}

TEST(CallbackInbox, MayBeAskedToExpectAgainWhileItGives)
{
    CallbackInbox inbox{"briskenroost"};
    inbox.expect({"briskenroost", "1", [&inbox](std::string) {
                      inbox.expect({"briskenroost", "2", [](std::string) { return true; }});
                      return true;
                  }});
    EXPECT_EQ(inbox.offer("briskenroost:?state=1"), Verdict::taken);
    EXPECT_EQ(inbox.offer("briskenroost:?state=2"), Verdict::taken);
}

} // namespace
} // namespace roost::test
