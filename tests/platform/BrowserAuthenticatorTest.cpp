#include "platform/BrowserAuthenticator.h"

#include "model/Arrival.h"
#include "model/RoostLog.h"
#include "tests/platform/PollUntil.h"
#include "tests/support/Await.h"
#include "tests/support/LogCatcher.h"

#include <gmock/gmock.h>

#include <thread>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Trouble = BrowserAuthenticator::Trouble;
using Result = std::expected<std::string, RoostAuthError>;
using Verdict = CallbackInbox::Verdict;

const Result cancelled = std::unexpected(RoostAuthError{RoostAuthError::Kind::cancelled, 0, {}});
const QString scheme = QStringLiteral("briskenroost");

WebURL urlOf(const std::string& state)
{
    return *WebURL::parse("https://roost.example/authorize?client_id=c&state=" + state + "&code_challenge=x");
}

std::string callbackOf(const std::string& state) { return "briskenroost://callback?code=1&state=" + state; }

/// Makes the way ready without an end, unless it is stopped.
QCoro::Task<bool> untilAStop(std::stop_token stop)
{
    const Arrival<bool> end;
    const std::stop_callback onStop(stop, [end] { end.set(false); });
    const auto coming = end.coming();
    co_return co_await coming;
}

/// A browser that remembers what it was shown, and fails when a test wants it.
class Browser final : public BrowserOpener {
public:
    void open(WebURL url, std::function<void(BrowserOpener::Trouble)> failed) override
    {
        opened.push_back(url.text());
        lastFailed = failed;
        if (troubleAtOnce) {
            failed(*troubleAtOnce);
        }
    }

    std::vector<std::string> opened;
    std::function<void(BrowserOpener::Trouble)> lastFailed;
    std::optional<BrowserOpener::Trouble> troubleAtOnce;
};

struct SignIn {
    LogCatcher log;
    Browser browser;
    CallbackInbox inbox{"briskenroost"};
    std::vector<std::pair<std::string, Trouble>> told;
    std::chrono::milliseconds bootTime{1'000'000};
    bool isReachable = true;
    BrowserAuthenticator authenticator;

    explicit SignIn(std::chrono::milliseconds timeout = 10min)
        : authenticator({.opener = browser,
                         .inbox = inbox,
                         .reach = [this](std::stop_token) -> QCoro::Task<bool> { co_return isReachable; },
                         .fallback = [this](const WebURL& url,
                                            Trouble trouble) { told.emplace_back(url.text(), trouble); },
                         .bootTime = [this] { return bootTime; },
                         .timeout = timeout})
    {
    }

    Pending<Result> begin(const std::string& state, std::stop_token stop = {})
    {
        return Pending<Result>(authenticator.authenticate(urlOf(state), scheme, std::move(stop)));
    }

    QList<QString> lines() const { return log.messages(RoostLog::auth().categoryName()); }
};

TEST(BrowserAuthenticator, OpensTheAddressAndGivesTheCallbackAsItWasReceived)
{
    SignIn signIn;
    auto attempt = signIn.begin("s1");
    EXPECT_THAT(signIn.browser.opened, ElementsAre(urlOf("s1").text()));
    EXPECT_FALSE(attempt.isDone());
    const std::string callback = "BriskenRoost://CallBack?%63ode=%7E&state=s1&iss=https%3A%2F%2Fa";
    EXPECT_EQ(signIn.inbox.offer(callback), Verdict::taken);
    EXPECT_EQ(attempt.get(), Result(callback));
    EXPECT_THAT(signIn.told, IsEmpty());
    EXPECT_THAT(signIn.log.lines(), IsEmpty());
}

TEST(BrowserAuthenticator, GivesACallbackThatSaysNoToo)
{
    SignIn signIn;
    auto attempt = signIn.begin("s1");
    signIn.inbox.offer("briskenroost://callback?error=access_denied&state=s1");
    EXPECT_EQ(attempt.get(), Result("briskenroost://callback?error=access_denied&state=s1"));
}

TEST(BrowserAuthenticator, WaitsOnAfterACallbackOfAnotherAttempt)
{
    SignIn signIn;
    auto attempt = signIn.begin("s2");
    EXPECT_EQ(signIn.inbox.offer(callbackOf("s1")), Verdict::ignored);
    EXPECT_EQ(signIn.inbox.offer("https://a/?state=s2"), Verdict::notCallback);
    EXPECT_EQ(signIn.lines().size(), 2);
    EXPECT_EQ(signIn.inbox.offer(callbackOf("s2")), Verdict::taken);
    EXPECT_EQ(attempt.get(), Result(callbackOf("s2")));
}

TEST(BrowserAuthenticator, IgnoresASecondCallbackWithOneLogLine)
{
    SignIn signIn;
    auto attempt = signIn.begin("s1");
    signIn.inbox.offer(callbackOf("s1"));
    EXPECT_EQ(signIn.inbox.offer(callbackOf("s1")), Verdict::ignored) << "before the first was looked at";
    EXPECT_TRUE(attempt.get().has_value());
    EXPECT_EQ(signIn.inbox.offer(callbackOf("s1")), Verdict::ignored);
    EXPECT_EQ(signIn.lines().size(), 2);
}

TEST(BrowserAuthenticator, IgnoresACallbackThatNobodyWaitsFor)
{
    SignIn signIn;
    EXPECT_EQ(signIn.inbox.offer(callbackOf("s1")), Verdict::ignored);
    auto attempt = signIn.begin("s1");
    EXPECT_FALSE(attempt.isDone());
    EXPECT_EQ(signIn.lines().size(), 1);
    signIn.inbox.offer(callbackOf("s1"));
    EXPECT_TRUE(attempt.get().has_value());
}

TEST(BrowserAuthenticator, EndsAsCancelledWhenTheTimeIsOver)
{
    SignIn signIn(20ms);
    auto attempt = signIn.begin("s1");
    EXPECT_EQ(attempt.get(), cancelled);
    EXPECT_EQ(signIn.inbox.offer(callbackOf("s1")), Verdict::ignored);
    EXPECT_THAT(signIn.lines(), ElementsAre(QStringLiteral("sign-in: no callback came in time"),
                                            QStringLiteral("callback ignored: no sign-in is waiting")));
}

TEST(BrowserAuthenticator, CountsTheTimeThatTheMachineSleeps)
{
    SignIn signIn;
    auto attempt = signIn.begin("s1");
    signIn.bootTime += 10min;
    EXPECT_EQ(signIn.inbox.offer(callbackOf("s1")), Verdict::ignored);
    EXPECT_EQ(attempt.get(), cancelled);
    EXPECT_EQ(signIn.lines().size(), 1);

    auto next = signIn.begin("s2");
    signIn.bootTime += 10min - 1ms;
    EXPECT_EQ(signIn.inbox.offer(callbackOf("s2")), Verdict::taken);
    EXPECT_TRUE(next.get().has_value());
}

TEST(BrowserAuthenticator, EndsAsCancelledOnAStop)
{
    SignIn signIn;
    std::stop_source stop;
    auto attempt = signIn.begin("s1", stop.get_token());
    std::thread([&stop] { stop.request_stop(); }).join();
    EXPECT_EQ(signIn.inbox.offer(callbackOf("s1")), Verdict::ignored) << "nothing counts after the stop";
    EXPECT_EQ(attempt.get(), cancelled);
}

TEST(BrowserAuthenticator, OpensNothingAfterAStop)
{
    SignIn signIn;
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(signIn.begin("s1", stop.get_token()).get(), cancelled);
    EXPECT_THAT(signIn.browser.opened, IsEmpty());
    EXPECT_EQ(signIn.inbox.offer(callbackOf("s1")), Verdict::ignored);
    EXPECT_THAT(signIn.lines(), ElementsAre(QStringLiteral("callback ignored: no sign-in is waiting")));
}

TEST(BrowserAuthenticator, DoesNotEndTheNextAttemptByAStopOfTheLast)
{
    SignIn signIn;
    std::stop_source stop;
    auto first = signIn.begin("s1", stop.get_token());
    signIn.inbox.offer(callbackOf("s1"));
    stop.request_stop();
    EXPECT_TRUE(first.get().has_value()) << "it came before the stop";
    auto second = signIn.begin("s2");
    EXPECT_FALSE(runUntil([&] { return second.isDone(); }, 20ms));
    EXPECT_EQ(signIn.inbox.offer(callbackOf("s2")), Verdict::taken);
    EXPECT_TRUE(second.get().has_value());
}

TEST(BrowserAuthenticator, MakesOneAttemptAtATime)
{
    SignIn signIn;
    auto first = signIn.begin("s1");
    EXPECT_EQ(signIn.begin("s2").get(), cancelled);
    EXPECT_EQ(signIn.browser.opened.size(), 1U);
    EXPECT_EQ(signIn.inbox.offer(callbackOf("s1")), Verdict::taken);
    EXPECT_TRUE(first.get().has_value());
}

TEST(BrowserAuthenticator, RefusesAnAddressWithoutAState)
{
    SignIn signIn;
    EXPECT_EQ(
        await(signIn.authenticator.authenticate(*WebURL::parse("https://roost.example/?a=1"), scheme, {})),
        cancelled);
    EXPECT_THAT(signIn.browser.opened, IsEmpty());
}

TEST(BrowserAuthenticator, ExpectsTheStateThatWasAddedLast)
{
    SignIn signIn;
    Pending attempt(signIn.authenticator.authenticate(
        *WebURL::parse("https://roost.example/?state=fixed&state=a%2Bb+c"), scheme, {}));
    EXPECT_EQ(signIn.inbox.offer(callbackOf("fixed")), Verdict::ignored);
    EXPECT_EQ(signIn.inbox.offer(callbackOf("a%2Bb%20c")), Verdict::taken);
    EXPECT_TRUE(attempt.get().has_value());
}

TEST(BrowserAuthenticator, TellsTheAddressWhenCallbacksMayNotArriveAndGoesOn)
{
    SignIn signIn;
    signIn.isReachable = false;
    auto attempt = signIn.begin("s1");
    EXPECT_THAT(signIn.told, ElementsAre(std::pair(urlOf("s1").text(), Trouble::notReachable)));
    EXPECT_EQ(signIn.browser.opened.size(), 1U) << "the browser is opened all the same";
    signIn.browser.lastFailed(BrowserOpener::Trouble::failed);
    EXPECT_EQ(signIn.told.size(), 1U) << "once is enough";
    EXPECT_EQ(signIn.inbox.offer(callbackOf("s1")), Verdict::taken) << "pasted, say";
    EXPECT_TRUE(attempt.get().has_value());
}

TEST(BrowserAuthenticator, TellsTheAddressWhenTheBrowserIsNotOpenedAndGoesOn)
{
    SignIn signIn;
    signIn.browser.troubleAtOnce = BrowserOpener::Trouble::noDisplay;
    auto attempt = signIn.begin("s1");
    EXPECT_THAT(signIn.told, ElementsAre(std::pair(urlOf("s1").text(), Trouble::notOpened)));
    EXPECT_THAT(signIn.lines(),
                ElementsAre(QStringLiteral("sign-in: browser not opened: there is no display")));
    EXPECT_EQ(signIn.inbox.offer(callbackOf("s1")), Verdict::taken);
    EXPECT_TRUE(attempt.get().has_value());
}

TEST(BrowserAuthenticator, TellsTheAddressWhenTheOpenerFailsLater)
{
    SignIn signIn;
    auto attempt = signIn.begin("s1");
    EXPECT_THAT(signIn.told, IsEmpty());
    signIn.browser.lastFailed(BrowserOpener::Trouble::failed);
    EXPECT_THAT(signIn.told, ElementsAre(std::pair(urlOf("s1").text(), Trouble::notOpened)));
    signIn.inbox.offer(callbackOf("s1"));
    EXPECT_TRUE(attempt.get().has_value());
}

TEST(BrowserAuthenticator, DoesNotCareThatTheOpenerFailsAfterTheEnd)
{
    SignIn signIn;
    auto attempt = signIn.begin("s1");
    signIn.inbox.offer(callbackOf("s1"));
    EXPECT_TRUE(attempt.get().has_value());
    signIn.browser.lastFailed(BrowserOpener::Trouble::failed);
    EXPECT_THAT(signIn.told, IsEmpty());
    EXPECT_THAT(signIn.lines(), IsEmpty());
}

TEST(BrowserAuthenticator, TakesACallbackFromTheFirstMomentOn)
{
    Browser browser;
    CallbackInbox inbox{"briskenroost"};
    BrowserAuthenticator authenticator(
        {.opener = browser, .inbox = inbox, .reach = untilAStop, .fallback = [](const WebURL&, Trouble) {}});
    Pending attempt(authenticator.authenticate(urlOf("s1"), scheme, {}));
    EXPECT_EQ(inbox.offer(callbackOf("s1")), Verdict::taken);
    EXPECT_EQ(attempt.get(), Result(callbackOf("s1")));
    EXPECT_THAT(browser.opened, IsEmpty());
}

TEST(BrowserAuthenticator, IsDoneSoonWhenAStopComesWhileTheWayIsMadeReady)
{
    LogCatcher log;
    Browser browser;
    CallbackInbox inbox{"briskenroost"};
    BrowserAuthenticator authenticator(
        {.opener = browser, .inbox = inbox, .reach = untilAStop, .fallback = [](const WebURL&, Trouble) {
             FAIL() << "there is nothing to tell any more";
         }});
    std::stop_source stop;
    Pending attempt(authenticator.authenticate(urlOf("s1"), scheme, stop.get_token()));
    stop.request_stop();
    EXPECT_EQ(attempt.get(), cancelled);
    EXPECT_THAT(browser.opened, IsEmpty());
}

TEST(BrowserAuthenticator, LogsNothingOfTheAddresses)
{
    SignIn signIn(50ms);
    signIn.isReachable = false;
    signIn.browser.troubleAtOnce = BrowserOpener::Trouble::failed;
    auto attempt = signIn.begin("canary");
    signIn.inbox.offer(callbackOf("canary2"));
    EXPECT_EQ(attempt.get(), cancelled);
    signIn.inbox.offer(callbackOf("canary"));
    EXPECT_EQ(signIn.lines().size(), 4);
    EXPECT_FALSE(signIn.log.saw(u"canary"));
    EXPECT_FALSE(signIn.log.saw(u"?"));
}

TEST(BootTime, GoesOn)
{
    const BootTime now = systemBootTime();
    const auto begin = now();
    EXPECT_GT(begin, 0ms);
    EXPECT_TRUE(pollUntil([&] { return now() > begin; }));
}

} // namespace
} // namespace roost::test
