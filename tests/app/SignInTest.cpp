#include "app/SignIn.h"

#include "tests/app/AppWorld.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using Kind = RoostAuthError::Kind;
using Status = RoostAccountRecord::Status;

/// A keyring that answers nobody.
class SilentKeyring final : public SecretStore {
public:
    int unlocks = 0;

    QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>> get(std::string) override
    {
        co_return std::unexpected(silence);
    }
    QCoro::Task<std::expected<bool, SecretsUnavailable>> contains(std::string) override
    {
        co_return std::unexpected(silence);
    }
    QCoro::Task<std::expected<void, KeychainError>> set(std::string, std::string) override
    {
        co_return std::unexpected(KeychainError{KeychainError::serviceNotAvailable});
    }
    QCoro::Task<bool> remove(std::string) override { co_return false; }
    QCoro::Task<std::expected<std::vector<std::string>, SecretsUnavailable>> keys(std::string) override
    {
        co_return std::unexpected(silence);
    }
    QCoro::Task<bool> unlock() override
    {
        ++unlocks;
        co_return false;
    }

    SecretsUnavailable silence{SecretsUnavailable::Why::notAnswering};
};

class SignInTest : public testing::Test, protected AppWorld {
protected:
    LogCatcher log;

    SignInTest() { start(); }

    bool isIdle() const { return std::holds_alternative<SignInState::Idle>(state().signInState()); }
    bool isInProgress() const
    {
        return std::holds_alternative<SignInState::InProgress>(state().signInState());
    }
    std::string failure() const
    {
        const auto* failed = std::get_if<SignInState::Failed>(&state().signInState());
        return failed != nullptr ? failed->message : "";
    }
    QList<QString> told() const { return log.messages("world.brisken.roost.mac.auth"); }
};

TEST_F(SignInTest, BringsAProfileWithItsNumbers)
{
    signIn("p1");

    EXPECT_TRUE(isIdle());
    ASSERT_TRUE(record("p1").has_value());
    EXPECT_EQ(record("p1")->profileName, "Profile p1");
    EXPECT_EQ(record("p1")->fetchedAt, time.now());
    EXPECT_EQ(record("p1")->lastAttemptAt, time.now());
    EXPECT_EQ(state().selectedProfileID(), "p1");
    EXPECT_TRUE(roost.isAlive(stored("p1")));
    EXPECT_THAT(told(), ElementsAre(QStringLiteral("sign-in started"), QStringLiteral("sign-in finished")));
}

TEST_F(SignInTest, TellsNothingOfWhatIsTrueAlready)
{
    signIn("p1");
    time.advance(1000s);

    EXPECT_THAT(center.added, IsEmpty());
    EXPECT_TRUE(ledger().entries.contains("p1|best:x|the best"));
}

TEST_F(SignInTest, GoesOnRefreshingTheNewProfile)
{
    signIn("p1");
    widgetRequests();
    time.advance(300s);

    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));
}

TEST_F(SignInTest, RunsOneAtATime)
{
    browser.hesitation = 10s;
    signIn("p1");
    EXPECT_TRUE(isInProgress());
    app().signIn();
    time.advance(10s);

    EXPECT_EQ(browser.opened, 1);
    EXPECT_TRUE(isIdle());
    EXPECT_THAT(state().accounts(), testing::SizeIs(1));
}

TEST_F(SignInTest, TellsWhatToOpenByHandWhileItRuns)
{
    EXPECT_EQ(await(app().signInAddress()), std::nullopt);
    browser.hesitation = 10s;
    roost.profiles.emplace("p1", numbersOf("p1", time.now()));
    browser.profileOfNextSignIn = "p1";
    app().signIn();
    Pending early(app().signInAddress());
    time.advance(1s);
    EXPECT_THAT(early.get().value_or(""), testing::StartsWith("https://roost.test/"));
    EXPECT_EQ(await(app().signInAddress()), early.get());
    time.advance(10s);
    EXPECT_TRUE(isIdle());
    EXPECT_EQ(await(app().signInAddress()), std::nullopt);
}

TEST_F(SignInTest, TellsNothingToOpenWhenItEndsBeforeTheBrowser)
{
    roost.trouble = [](const HttpRequest&) { return noNetwork(); };
    app().signIn();
    Pending address(app().signInAddress());
    time.advance(60s);
    EXPECT_NE(failure(), "");
    EXPECT_EQ(address.get(), std::nullopt);
}

TEST_F(SignInTest, CanBeGivenUpAndBegunAnew)
{
    app().cancelSignIn();
    browser.hesitation = 10s;
    signIn("p1");
    app().cancelSignIn();
    ASSERT_TRUE(runUntil([this] { return isIdle(); }));
    EXPECT_THAT(state().accounts(), testing::IsEmpty());

    browser.hesitation = 0s;
    signIn("p1");
    EXPECT_THAT(state().accounts(), testing::SizeIs(1));
}

TEST_F(SignInTest, ReplacesTheRecordOfAProfileThatSignsInAgain)
{
    signIn("p1");
    signIn("p2");
    EXPECT_EQ(state().selectedProfileID(), "p2");
    roost.profiles.at("p1").best->views = 5000;
    roost.profiles.at("p1").followers->total = 150;
    signIn("p1");

    ASSERT_EQ(state().accounts().size(), 2U);
    EXPECT_EQ(state().accounts()[0].profileId, "p1");
    EXPECT_EQ(state().accounts()[0].snapshot->best->views, 5000);
    EXPECT_EQ(state().selectedProfileID(), "p1");
}

TEST_F(SignInTest, TellsOnceWhatHappenedSinceAProfileWasSignedInBefore)
{
    signIn("p1");
    roost.revoke("p1");
    time.advance(300s);
    roost.profiles.at("p1").best->views = 5000;
    roost.profiles.at("p1").followers->total = 150;
    signIn("p1");
    time.advance(600s);

    EXPECT_THAT(center.added,
                ElementsAre(Field(&NotificationCenter::Request::identifier, "p1|milestone:x|the best:1000"),
                            Field(&NotificationCenter::Request::identifier, "p1|followers:150")));
}

TEST_F(SignInTest, BringsBackAProfileWhoseAuthorizationHadEnded)
{
    signIn("p1");
    roost.revoke("p1");
    time.advance(300s);
    ASSERT_EQ(record("p1")->status, Status::signedOut);
    signIn("p1");
    EXPECT_EQ(record("p1")->status, Status::ok);

    widgetRequests();
    time.advance(300s);
    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));
}

TEST_F(SignInTest, AsksTheUserToOpenAStoreThatIsClosedAndNoneThatDoesNotAnswer)
{
    quit();
    SilentKeyring silent;
    keyringOfApp = &silent;
    start();
    signIn("p1");
    EXPECT_EQ(silent.unlocks, 0);

    silent.silence.why = SecretsUnavailable::Why::noService;
    signIn("p2");
    EXPECT_EQ(silent.unlocks, 1);
    silent.silence.why = SecretsUnavailable::Why::locked;
    signIn("p3");
    EXPECT_EQ(silent.unlocks, 2);
    quit();
}

TEST_F(SignInTest, IsQuietWhenTheUserClosesTheBrowser)
{
    app().signIn();
    time.advance(0s);

    EXPECT_TRUE(isIdle());
    EXPECT_THAT(state().accounts(), IsEmpty());
    EXPECT_THAT(told(), ElementsAre(QStringLiteral("sign-in started"), QStringLiteral("sign-in cancelled")));
}

TEST_F(SignInTest, SaysThatNothingWasSavedWhenTheStateIsWrong)
{
    browser.wrongState = "x";
    signIn("p1");

    EXPECT_EQ(failure(), "The sign-in did not complete safely, so nothing was saved. Try again.");
    EXPECT_THAT(state().accounts(), IsEmpty());
    EXPECT_EQ(stored("p1"), "");
    EXPECT_EQ(state().selectedProfileID(), std::nullopt);
    EXPECT_TRUE(told().contains(QStringLiteral("sign-in failed: stateMismatch")));

    browser.wrongState = "";
    signIn("p1");
    EXPECT_TRUE(isIdle());
}

TEST_F(SignInTest, LeavesEverythingAsItWasWhenTheServiceCannotBeReached)
{
    signIn("p1");
    const RoostAccountRecord before = *record("p1");
    const std::string token = stored("p1");
    roost.trouble = [](const HttpRequest&) { return noNetwork(); };
    signIn("p2");

    // The addresses of the service are known by now; it is the tokens that do not come.
    EXPECT_EQ(failure(), "Brisken Roost could not be reached. Check your connection and try again.");
    EXPECT_EQ(record("p1"), before);
    EXPECT_EQ(stored("p1"), token);
    EXPECT_EQ(state().selectedProfileID(), "p1");
}

TEST_F(SignInTest, LastsForThisRunWhenTheStoreTakesNothing)
{
    secrets.failWrites = true;
    signIn("p1");
    EXPECT_TRUE(isIdle());
    EXPECT_TRUE(log.saw(u"Brisken Roost: the keychain refused the refresh token (-25308)"));
    widgetRequests();
    time.advance(300s);
    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));

    secrets.failWrites = false;
    time.advance(300s);
    EXPECT_TRUE(roost.isAlive(stored("p1")));
}

TEST_F(SignInTest, OpensALockedStoreOnce)
{
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
    signIn("p1");

    EXPECT_TRUE(isIdle());
    EXPECT_TRUE(roost.isAlive(stored("p1")));
}

TEST_F(SignInTest, LetsTheProgramQuitWhileItsUserThinksAboutOpeningTheStore)
{
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
    keyring.unlocking.shut();
    signIn("p1");
    EXPECT_TRUE(isInProgress());
    const Pending<void> ending{app().quit()};
    time.advance(0s);
    EXPECT_TRUE(ending.isDone());
    EXPECT_EQ(browser.opened, 0);

    keyring.unlocking.open();
    time.advance(0s);
}

TEST_F(SignInTest, TellsPeopleInTheirLanguage)
{
    for (const Kind kind : {Kind::unreachable, Kind::denied, Kind::stateMismatch}) {
        const RoostAuthError error{kind, 0, {}};
        const std::string german = SignIn::message(error, "de-DE");
        EXPECT_FALSE(german.empty());
        EXPECT_NE(german, messageFor(error));
        EXPECT_EQ(SignIn::message(error, "en-US"), messageFor(error));
    }
    EXPECT_EQ(SignIn::message(RoostAuthError{Kind::cancelled, 0, {}}, "de-DE"), "");
    EXPECT_EQ(SignIn::message(Stopped{}, "de-DE"), "");
    EXPECT_EQ(SignIn::message(RefreshBlocked{}, "en-US"), "Something went wrong. Try again.");
    EXPECT_NE(SignIn::message(RefreshBlocked{}, "de-DE"), "Something went wrong. Try again.");
}

TEST_F(SignInTest, TellsAFailureAsAnErrorAndTheRestInPassing)
{
    browser.wrongState = "x";
    signIn("p1");
    browser.wrongState = "";
    browser.profileOfNextSignIn.reset();
    app().signIn();
    time.advance(0s);
    signIn("p1");

    const QByteArray auth = "world.brisken.roost.mac.auth";
    QList<LogCatcher::Line> lines = log.lines();
    lines.removeIf([&](const LogCatcher::Line& line) { return line.category != auth; });
    EXPECT_THAT(lines, ElementsAre(LogCatcher::Line{QtInfoMsg, auth, QStringLiteral("sign-in started")},
                                   LogCatcher::Line{QtCriticalMsg, auth,
                                                    QStringLiteral("sign-in failed: stateMismatch")},
                                   LogCatcher::Line{QtInfoMsg, auth, QStringLiteral("sign-in started")},
                                   LogCatcher::Line{QtInfoMsg, auth, QStringLiteral("sign-in cancelled")},
                                   LogCatcher::Line{QtInfoMsg, auth, QStringLiteral("sign-in started")},
                                   LogCatcher::Line{QtInfoMsg, auth, QStringLiteral("sign-in finished")}));
}

TEST_F(SignInTest, HasTheWidgetsLookWhenAProfileComesAndGoes)
{
    const int before = widgets.reloads;
    signIn("p1");
    EXPECT_EQ(widgets.reloads, before + 1);
    app().signOut("p1");
    time.advance(0s);
    EXPECT_EQ(widgets.reloads, before + 2);
}

TEST_F(SignInTest, TurnsOpeningAtLoginOnOnceAndLeavesItToTheUserThen)
{
    signIn("p1");
    EXPECT_TRUE(loginItem.enabled);
    EXPECT_TRUE(state().launchAtLogin());
    loginItem.enabled = false;
    signIn("p2");

    EXPECT_FALSE(loginItem.enabled);
    EXPECT_EQ(loginItem.changes, 1);
    EXPECT_EQ(settings.file["didApplyLaunchAtLoginDefault"], "true");
}

TEST_F(SignInTest, LeavesTheLoginDefaultForWhenThereIsALoginItem)
{
    quit();
    hasLoginItem = false;
    start();
    signIn("p1");

    EXPECT_FALSE(settings.file.contains("didApplyLaunchAtLoginDefault"));
}

TEST_F(SignInTest, AsksForPermissionWhereItWasNeverAsked)
{
    center.authorized = NotificationCenter::Authorization::notDetermined;
    signIn("p1");
    EXPECT_THAT(center.calls, ElementsAre("authorization", "requestAuthorization"));
}

TEST_F(SignInTest, DoesNotAskForPermissionTwice)
{
    center.authorized = NotificationCenter::Authorization::denied;
    signIn("p1");
    EXPECT_THAT(center.calls, ElementsAre("authorization"));
}

TEST_F(SignInTest, IsGivenUpWhenTheProgramQuits)
{
    browser.hesitation = 1h;
    signIn("p1");
    quit();

    EXPECT_EQ(stored("p1"), "");
    EXPECT_FALSE(record("p1").has_value());
}

TEST_F(SignInTest, SurvivesACycleThatRunsMeanwhile)
{
    signIn("p1");
    roost.latency = [] { return 10s; };
    browser.hesitation = 3s;
    app().requestRefresh();
    time.advance(3s);
    app().requestRefresh();
    signIn("p2");
    time.advance(200s);

    EXPECT_TRUE(isIdle());
    EXPECT_TRUE(record("p2").has_value());
    EXPECT_EQ(roost.reuses(), 0U);
}

TEST_F(SignInTest, IsNotUndoneByNumbersThatWereOnTheirWayBefore)
{
    signIn("p1");
    time.advance(100s);
    // A refresh whose answer takes long, and a sign-in that is quicker.
    roost.latency = [] { return 20s; };
    app().requestRefresh();
    time.advance(11s);
    roost.latency = [] { return 0s; };
    roost.profiles.at("p1").posts.next.clear();
    signIn("p1");
    const RoostSnapshot newer = *state().accounts()[0].snapshot;
    time.advance(60s);

    EXPECT_EQ(state().accounts()[0].snapshot, newer);
}

TEST_F(SignInTest, KeepsTheClientThatItsTokensWereMadeFor)
{
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::noService};
    browser.hesitation = 10s;
    signIn("p1");
    time.advance(5s);
    secrets.unavailable.reset();
    time.advance(5s);

    EXPECT_TRUE(isIdle());
    EXPECT_EQ(secrets.values["client-id|https://roost.test"], "client");
    EXPECT_TRUE(roost.isAlive(stored("p1")));
}

TEST_F(SignInTest, IsUndoneByASignOutWhileItsTokenIsBeingStored)
{
    lock.hold();
    signIn("p1");
    EXPECT_TRUE(isInProgress());
    app().signOut("p1");
    lock.release();
    time.advance(100s);

    EXPECT_TRUE(isIdle());
    EXPECT_THAT(state().accounts(), IsEmpty());
    EXPECT_EQ(stored("p1"), "");
    EXPECT_EQ(state().selectedProfileID(), std::nullopt);
    EXPECT_THAT(told(), ElementsAre(QStringLiteral("sign-in started"), QStringLiteral("sign-in cancelled")));
}

TEST_F(SignInTest, IsNotTakenUpWhileTheProgramQuits)
{
    signIn("p1");
    roost.latency = [] { return 40s; };
    app().requestRefresh();
    time.advance(2s);
    const Pending<void> ending{app().quit()};
    signIn("p2");
    quit();

    EXPECT_EQ(browser.opened, 1);
    EXPECT_EQ(stored("p2"), "");
}

TEST_F(SignInTest, IsFinishedByAProgramThatQuitsOnceItHasTheTokens)
{
    center.authorized = NotificationCenter::Authorization::notDetermined;
    lock.hold();
    signIn("p1");
    const Pending<void> ending{app().quit()};
    lock.release();
    quit();

    EXPECT_TRUE(roost.isAlive(stored("p1")));
    EXPECT_TRUE(record("p1").has_value());
    EXPECT_THAT(center.calls, IsEmpty());
}

class SignOutTest : public SignInTest {};

TEST_F(SignOutTest, ForgetsTheProfileAndSelectsTheFirstThatIsLeft)
{
    signIn("p1");
    signIn("p2");
    signIn("p3");
    app().signOut("p3");
    time.advance(0s);

    EXPECT_EQ(state().selectedProfileID(), "p1");
    EXPECT_EQ(settings.file["selectedProfileId"], "p1");
    EXPECT_EQ(stored("p3"), "");
    ASSERT_EQ(file()->accounts.size(), 2U);
    EXPECT_EQ(file()->accounts[1].profileId, "p2");
}

TEST_F(SignOutTest, LeavesTheChoiceAloneWhenAnotherProfileGoes)
{
    signIn("p1");
    signIn("p2");
    app().signOut("p1");
    time.advance(0s);

    EXPECT_EQ(state().selectedProfileID(), "p2");
}

TEST_F(SignOutTest, LeavesNobodySelectedWhenTheLastOneGoes)
{
    signIn("p1");
    app().signOut("p1");
    time.advance(0s);

    EXPECT_EQ(state().selectedProfileID(), std::nullopt);
    EXPECT_FALSE(settings.file.contains("selectedProfileId"));
    EXPECT_THAT(file()->accounts, IsEmpty());
}

TEST_F(SignOutTest, ForgetsAProfileWithoutASession)
{
    signIn("p1");
    roost.revoke("p1");
    time.advance(300s);
    secrets.values["refresh-token|p1"] = "left over";
    app().signOut("p1");
    time.advance(0s);

    EXPECT_EQ(stored("p1"), "");
    EXPECT_FALSE(record("p1").has_value());
}

TEST_F(SignOutTest, ForgetsTheTokenAsSoonAsTheStoreCanBeAsked)
{
    signIn("p1");
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
    app().signOut("p1");
    time.advance(0s);
    EXPECT_FALSE(record("p1").has_value());
    EXPECT_NE(stored("p1"), "");

    secrets.unavailable.reset();
    time.advance(300s);
    EXPECT_EQ(stored("p1"), "");
}

TEST_F(SignOutTest, DropsWhatARefreshBringsMeanwhile)
{
    signIn("p1");
    roost.latency = [] { return 10s; };
    time.advance(301s);
    app().signOut("p1");
    time.advance(100s);

    EXPECT_FALSE(record("p1").has_value());
    EXPECT_EQ(stored("p1"), "");
    // Nobody is told that the service has ended what the user ended.
    EXPECT_FALSE(log.saw(u"refresh: Roost ended this authorization"));
}

} // namespace
} // namespace roost::test
