#include "app/Accounts.h"

#include "tests/app/AppWorld.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;
using Status = RoostAccountRecord::Status;

class AccountsTest : public testing::Test, protected AppWorld {
protected:
    LogCatcher log;

    /// The service ends the sign-in of "p1", and the keyring closes before it can be told.
    void endBehindTheKeyring()
    {
        roost.revoke("p1");
        roost.onAnswer = [this](const HttpRequest& request, HttpResult result) {
            if (request.url.path() == QLatin1String("/token")) {
                secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
            }
            return result;
        };
        time.advance(300s);
        roost.onAnswer = [](const HttpRequest&, HttpResult result) { return result; };
    }
};

TEST_F(AccountsTest, TakesUpTheNumbersOfAFileThatItCouldNotRead)
{
    signInBefore("p1");
    signInBefore("p2");
    start();
    quit();
    const RoostAccountRecord before = *record("p1");
    secrets.values.erase("refresh-token|p2");
    files.failEvery(FailingFileSystem::Operation::read, std::make_error_code(std::errc::io_error));
    roost.trouble = [](const HttpRequest&) { return noNetwork(); };
    start();
    files.recover();
    time.advance(300s);

    ASSERT_TRUE(record("p1").has_value());
    EXPECT_EQ(record("p1")->snapshot, before.snapshot);
    EXPECT_EQ(record("p1")->fetchedAt, before.fetchedAt);
    EXPECT_EQ(record("p1")->profileName, before.profileName);
    EXPECT_EQ(record("p1")->status, Status::ok);
    EXPECT_EQ(record("p2")->status, Status::signedOut);
}

TEST_F(AccountsTest, WritesWhoIsSignedInBeforeTheFirstNumbersCome)
{
    signInBefore("p1");
    roost.latency = [] { return 20s; };
    start();

    ASSERT_TRUE(record("p1").has_value());
    EXPECT_EQ(record("p1")->profileName, "Profile");
}

TEST_F(AccountsTest, DropsWhatASignInThatIsOverBringsAfterTheNextOne)
{
    start();
    signIn("p1");
    time.advance(100s);
    roost.latency = [] { return 20s; };
    app().requestRefresh();
    time.advance(11s);
    roost.latency = [] { return 0s; };
    app().signOut("p1");
    signIn("p1");
    const RoostAccountRecord newer = *record("p1");
    time.advance(60s);

    EXPECT_EQ(record("p1"), newer);
    EXPECT_TRUE(roost.isAlive(stored("p1")));
}

TEST_F(AccountsTest, SignsOutAfterTheRefreshOfAnotherProcess)
{
    start();
    signIn("p1");
    lock.hold();
    app().signOut("p1");
    time.advance(5s);
    EXPECT_THAT(state().accounts(), IsEmpty());
    EXPECT_NE(stored("p1"), "");

    lock.release();
    time.advance(0s);
    EXPECT_EQ(stored("p1"), "");
    EXPECT_THAT(file()->accounts, IsEmpty());
}

TEST_F(AccountsTest, LeavesASignInAloneThatOvertookTheSignOut)
{
    start();
    signIn("p1");
    lock.hold();
    app().signOut("p1");
    time.advance(5s);
    lock.letPass();
    signIn("p1");
    lock.release();
    time.advance(600s);

    EXPECT_TRUE(roost.isAlive(stored("p1")));
    EXPECT_TRUE(record("p1").has_value());
}

TEST_F(AccountsTest, SignsOutLateWithoutTheTokenOfTheNextSignIn)
{
    start();
    signIn("p1");
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::notAnswering};
    app().signOut("p1");
    time.advance(0s);
    secrets.unavailable.reset();
    signIn("p1");
    time.advance(600s);

    EXPECT_TRUE(roost.isAlive(stored("p1")));
}

TEST_F(AccountsTest, KeepsAProfileOutThoughTheStoreOpensOnlyLater)
{
    signInBefore("p1");
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
    start();
    app().signOut("p1");
    time.advance(0s);
    secrets.unavailable.reset();
    time.advance(600s);

    EXPECT_THAT(state().accounts(), IsEmpty());
    EXPECT_EQ(stored("p1"), "");
}

TEST_F(AccountsTest, ForgetsATokenAtTheEndThatItCouldNotForgetBefore)
{
    start();
    signIn("p1");
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
    app().signOut("p1");
    time.advance(0s);
    secrets.unavailable.reset();
    quit();

    EXPECT_EQ(stored("p1"), "");
}

TEST_F(AccountsTest, ForgetsLaterWhatTheServiceEndedWhileTheStoreWasLocked)
{
    start();
    signIn("p1");
    endBehindTheKeyring();
    ASSERT_EQ(record("p1")->status, Status::signedOut);
    ASSERT_NE(stored("p1"), "");
    time.advance(600s);
    EXPECT_NE(stored("p1"), "");

    secrets.unavailable.reset();
    time.advance(300s);
    EXPECT_EQ(stored("p1"), "");
    quit();
    start();
    EXPECT_EQ(record("p1")->status, Status::signedOut);
}

TEST_F(AccountsTest, ForgetsAtTheEndWhatTheServiceEndedWhileTheStoreWasLocked)
{
    start();
    signIn("p1");
    endBehindTheKeyring();
    secrets.unavailable.reset();
    quit();

    EXPECT_EQ(stored("p1"), "");
}

TEST_F(AccountsTest, ForgetsLaterNoSignInThatCameSince)
{
    start();
    signIn("p1");
    endBehindTheKeyring();
    secrets.unavailable.reset();
    signIn("p1");
    time.advance(600s);

    EXPECT_TRUE(roost.isAlive(stored("p1")));
    EXPECT_EQ(record("p1")->status, Status::ok);
}

TEST_F(AccountsTest, ForgetsLaterNoSignInOfAnotherProcess)
{
    start();
    signIn("p1");
    endBehindTheKeyring();
    secrets.unavailable.reset();
    secrets.values["refresh-token|p1"] = "of another process";
    time.advance(600s);
    quit();

    EXPECT_EQ(stored("p1"), "of another process");
}

TEST_F(AccountsTest, ForgetsWhatItsUserSignedOutAfterTheServiceDid)
{
    start();
    signIn("p1");
    endBehindTheKeyring();
    app().signOut("p1");
    time.advance(0s);
    secrets.unavailable.reset();
    time.advance(300s);

    EXPECT_EQ(stored("p1"), "");
    EXPECT_THAT(state().accounts(), IsEmpty());
}

TEST_F(AccountsTest, SendsNoTokenThatHasNotBeenSentWhenItQuits)
{
    signInBefore("p1");
    const std::string before = stored("p1");
    roost.latency = [] { return 40s; };
    start();
    // The addresses of the service are still on their way.
    time.advance(10s);
    quit();

    EXPECT_EQ(roost.count("/token"), 0U);
    EXPECT_EQ(stored("p1"), before);
}

TEST_F(AccountsTest, StoresAtTheEndTheTokenOfASignInThatEndsWhileItQuits)
{
    start();
    lock.hold();
    signIn("p1");
    const Pending<void> ending{app().quit()};
    secrets.failWrites = true;
    lock.release();
    // The store takes it again when the records of the new profile are written.
    files.beforeEach([this](std::size_t) { secrets.failWrites = false; });
    time.advance(0s);
    files.beforeEach([](std::size_t) {});

    EXPECT_TRUE(ending.isDone());
    EXPECT_TRUE(roost.isAlive(stored("p1")));
}

TEST_F(AccountsTest, KeepsAProfileOutThoughTheFileIsReadOnlyLater)
{
    start();
    signIn("p1");
    signIn("p2");
    quit();
    files.failEvery(FailingFileSystem::Operation::read, std::make_error_code(std::errc::io_error));
    start();
    app().signOut("p1");
    time.advance(0s);
    files.recover();
    time.advance(300s);

    ASSERT_EQ(file()->accounts.size(), 1U);
    EXPECT_EQ(file()->accounts[0].profileId, "p2");
}

TEST_F(AccountsTest, WaitsForWhatASessionDoesThatIsSignedOut)
{
    start();
    signIn("p1");
    roost.expire("p1");
    roost.latency = [] { return 40s; };
    time.advance(350s);
    // A new token has been asked for, and the sign-out does not wait for that.
    app().signOut("p1");
    quit();

    EXPECT_EQ(time.pauses(), 0U);
    EXPECT_EQ(stored("p1"), "");
}

TEST_F(AccountsTest, SignsOutWhileTheProgramQuits)
{
    start();
    signIn("p1");
    lock.hold();
    const Pending<void> ending{app().quit()};
    app().signOut("p1");
    time.advance(10s);
    EXPECT_FALSE(ending.isDone());
    lock.release();
    time.advance(0s);

    EXPECT_TRUE(ending.isDone());
    EXPECT_EQ(stored("p1"), "");
    EXPECT_THAT(file()->accounts, IsEmpty());
}

TEST_F(AccountsTest, SignsOutThoughTheProgramHasNearlyQuit)
{
    start();
    signIn("p1");
    signIn("p2");
    roost.expire("p1");
    roost.latency = [] { return 40s; };
    time.advance(350s);
    const Pending<void> ending{app().quit()};
    // Only the new token of the first profile is still waited for.
    time.advance(5s);
    lock.hold();
    app().signOut("p2");
    time.advance(100s);
    EXPECT_FALSE(ending.isDone());

    lock.release();
    time.advance(0s);
    EXPECT_TRUE(ending.isDone());
    EXPECT_EQ(stored("p2"), "");
    EXPECT_TRUE(roost.isAlive(stored("p1")));
}

} // namespace
} // namespace roost::test
