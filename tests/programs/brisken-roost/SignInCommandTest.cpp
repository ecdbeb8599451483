#include "programs/brisken-roost/SignInCommand.h"

#include "tests/programs/brisken-roost/AccountWorld.h"
#include "tests/support/Await.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Callback = std::expected<std::string, RoostAuthError>;
using Kind = RoostAuthError::Kind;

const std::string callbackAddress = "briskenroost://oauth/callback";

class Browser final : public WebAuthenticating {
public:
    QCoro::Task<Callback> authenticate(WebURL url, QString, std::stop_token) override
    {
        const std::string& text = url.text();
        state = text.substr(text.find("&state=") + 7, 22);
        ++opened;
        if (whenOpened) {
            whenOpened();
        }
        Callback back = answer ? *answer : Callback{callbackAddress + "?code=C&state=" + state};
        co_return back;
    }

    std::optional<Callback> answer;
    std::function<void()> whenOpened;
    std::string state;
    int opened = 0;
};

class SignInCommandTest : public AccountWorld {
protected:
    SignInCommandTest()
    {
        service.answer(path::token, 200, tokensOfExample("A", "R1"));
        service.answer(path::widget, 200, json(snapshotOf("a", 48213)));
    }

    CommandResult signedIn(std::stop_token stop = {})
    {
        const AccountServices parts = services();
        const SignInFlow flow{
            oauth, parts.api, browser, PKCE::systemRandom,
            [](std::chrono::duration<double>, std::stop_token) -> QCoro::Task<void> { co_return; }};
        return await(runSignIn(flow, parts, stop));
    }

    void expectRefused(const std::string& sentence)
    {
        const CommandResult result = signedIn();
        EXPECT_EQ(result.code, ExitCode::failure);
        EXPECT_EQ(result.error, "brisken-roost: " + sentence + "\n");
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(refreshToken("a"), std::nullopt);
        EXPECT_EQ(store.read(), std::nullopt);
    }

    Browser browser;
};

TEST_F(SignInCommandTest, KeepsTheTokenAndTheFirstNumbers)
{
    const CommandResult result = signedIn();
    EXPECT_EQ(result.code, ExitCode::fine);
    EXPECT_EQ(result.output, "Signed in to " + snapshotOf("a", 48213).profile.name + ".\n");
    EXPECT_EQ(refreshToken("a"), "R1");
    EXPECT_EQ(store.read(), fileOf({recordOf("a", 48213, 0s)}));
    EXPECT_THAT(log.messages("world.brisken.roost.mac.auth"),
                ElementsAre(QStringLiteral("sign-in started"), QStringLiteral("sign-in finished")));
}

TEST_F(SignInCommandTest, PutsAKnownProfileInItsPlace)
{
    signIn("a");
    RoostAccountRecord gone = recordOf("a", 1, 2h);
    gone.status = RoostAccountRecord::Status::signedOut;
    ASSERT_TRUE(store.write(fileOf({gone, recordOf("b", 2, 1h)})));
    EXPECT_EQ(signedIn().code, ExitCode::fine);
    EXPECT_EQ(store.read(), fileOf({recordOf("a", 48213, 0s), recordOf("b", 2, 1h)}));
    EXPECT_EQ(refreshToken("a"), "R1");
}

TEST_F(SignInCommandTest, StoresTheTokenUnderTheLockOfTheProfile)
{
    ASSERT_EQ(signedIn().code, ExitCode::fine);
    EXPECT_THAT(lock.locked, ElementsAre("a"));
    EXPECT_FALSE(lock.isHeld);
    secrets.values.clear();
    lock.isFree = false;
    EXPECT_EQ(signedIn().error, "brisken-roost: Something went wrong. Try again.\n");
    EXPECT_EQ(refreshToken("a"), std::nullopt);
}

TEST_F(SignInCommandTest, TellsEachFailureInItsSentence)
{
    browser.answer = Callback{callbackAddress + "?code=C&state=other"};
    expectRefused("The sign-in did not complete safely, so nothing was saved. Try again.");
    EXPECT_TRUE(log.saw(u"sign-in failed: stateMismatch"));
    browser.answer.reset();
    service.answerOnly(path::token, 400, R"({"error":"invalid_grant"})");
    expectRefused("Roost did not allow this connection. Try signing in again.");
    service.answerOnly(path::token, 503, "");
    expectRefused("Brisken Roost could not be reached. Check your connection and try again.");
}

TEST_F(SignInCommandTest, SaysThatItWasCancelled)
{
    browser.answer = std::unexpected(RoostAuthError{Kind::cancelled, 0, {}});
    expectRefused("The sign-in was cancelled.");
    EXPECT_THAT(log.messages("world.brisken.roost.mac.auth"),
                ElementsAre(QStringLiteral("sign-in started"), QStringLiteral("sign-in cancelled")));
}

TEST_F(SignInCommandTest, OpensNoBrowserWhereNothingCanBeKept)
{
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::noService};
    const CommandResult result = signedIn();
    EXPECT_EQ(result.code, ExitCode::failure);
    EXPECT_THAT(result.error, HasSubstr("There is no keyring"));
    EXPECT_EQ(browser.opened, 0);
    EXPECT_THAT(service.requests(), IsEmpty());
}

TEST_F(SignInCommandTest, AsksTheUserToOpenALockedKeyring)
{
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
    EXPECT_EQ(signedIn().code, ExitCode::fine);
    EXPECT_EQ(refreshToken("a"), "R1");
}

TEST_F(SignInCommandTest, SavesNothingWhenTheKeyringRefusesTheToken)
{
    secrets.failWrites = true;
    secrets.values["client-id|https://roost.example"] = "c";
    expectRefused("The keyring did not take the sign-in. Try again.");
    EXPECT_TRUE(log.saw(u"Brisken Roost: the keychain refused the refresh token (-25308)"));
}

TEST_F(SignInCommandTest, KeepsAFormerSignInWhenTheKeyringRefusesTheNewOne)
{
    signIn("a");
    secrets.values["client-id|https://roost.example"] = "c";
    browser.whenOpened = [this] { secrets.failWrites = true; };
    EXPECT_EQ(signedIn().error, "brisken-roost: The keyring did not take the sign-in. Try again.\n");
    EXPECT_EQ(refreshToken("a"), "Ra");
}

TEST_F(SignInCommandTest, KeepsAFormerSignInWhenTheKeyringRefusesTheClientId)
{
    signIn("a");
    secrets.failWrites = true;
    EXPECT_EQ(signedIn().code, ExitCode::failure);
    EXPECT_EQ(refreshToken("a"), "Ra");
}

TEST_F(SignInCommandTest, StoresTheClientIdAgainWithTheSignIn)
{
    secrets.failWrites = true;
    browser.whenOpened = [this] { secrets.failWrites = false; };
    EXPECT_EQ(signedIn().code, ExitCode::fine);
    EXPECT_EQ(secrets.values["client-id|https://roost.example"], "c");
    EXPECT_EQ(refreshToken("a"), "R1");
}

TEST_F(SignInCommandTest, IsCancelledWhenItIsStoppedWhileItWaitsForTheLock)
{
    std::stop_source source;
    lock.isFree = false;
    lock.whenAsked = [&source] { source.request_stop(); };
    EXPECT_EQ(signedIn(source.get_token()).error, "brisken-roost: The sign-in was cancelled.\n");
    EXPECT_EQ(refreshToken("a"), std::nullopt);
}

TEST_F(SignInCommandTest, AsksNobodyToOpenAKeyringThatDoesNotAnswer)
{
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::notAnswering};
    EXPECT_THAT(signedIn().error, HasSubstr("The keyring does not answer."));
}

TEST_F(SignInCommandTest, LetsNoNameSteerTheTerminal)
{
    RoostSnapshot snapshot = snapshotOf("a", 1);
    snapshot.profile.name = "\x1b[2Jnasty\n";
    service.answerOnly(path::widget, 200, json(snapshot));
    EXPECT_EQ(signedIn().output, "Signed in to ·[2Jnasty .\n");
}

TEST_F(SignInCommandTest, LogsNoToken)
{
    service.answerOnly(path::token, 200, tokensOfExample("canary", "canary"));
    ASSERT_EQ(signedIn().code, ExitCode::fine);
    EXPECT_FALSE(log.saw(u"canary"));
}

} // namespace
} // namespace roost::test
