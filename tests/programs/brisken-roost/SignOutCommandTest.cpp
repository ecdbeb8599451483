#include "programs/brisken-roost/SignOutCommand.h"

#include "tests/programs/brisken-roost/AccountWorld.h"
#include "tests/support/Await.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SignOutCommandTest : public AccountWorld {
protected:
    CommandResult signedOut(const std::string& id) { return await(runSignOut(id, services(), {})); }
};

TEST_F(SignOutCommandTest, ForgetsTheTokenAndTheRecord)
{
    signIn("a");
    signIn("b");
    ASSERT_TRUE(store.write(fileOf({recordOf("a", 1, 1h), recordOf("b", 2, 1h)})));
    const CommandResult result = signedOut("a");
    EXPECT_EQ(result.code, ExitCode::fine);
    EXPECT_THAT(result.output, HasSubstr("Signed out of " + snapshotOf("a", 1).profile.name + "."));
    EXPECT_EQ(refreshToken("a"), std::nullopt);
    EXPECT_EQ(refreshToken("b"), "Rb");
    EXPECT_EQ(store.read(), fileOf({recordOf("b", 2, 1h)}));
    EXPECT_THAT(lock.locked, ElementsAre("a"));
    EXPECT_THAT(service.requests(), IsEmpty());
}

TEST_F(SignOutCommandTest, ForgetsAProfileThatHasNoRecordOrNoToken)
{
    signIn("a");
    EXPECT_EQ(signedOut("a").code, ExitCode::fine);
    EXPECT_EQ(refreshToken("a"), std::nullopt);
    ASSERT_TRUE(store.write(fileOf({recordOf("b", 2, 1h)})));
    EXPECT_EQ(signedOut("b").code, ExitCode::fine);
    EXPECT_EQ(store.read(), fileOf({}));
}

TEST_F(SignOutCommandTest, KnowsNoStranger)
{
    signIn("a");
    const CommandResult result = signedOut("\x1b[2J");
    EXPECT_EQ(result.code, ExitCode::nothingToShow);
    EXPECT_EQ(result.error, "brisken-roost: There is no profile \"·[2J\" here.\n");
    EXPECT_EQ(refreshToken("a"), "Ra");
}

TEST_F(SignOutCommandTest, ChangesNothingWhileTheKeyringIsLocked)
{
    signIn("a");
    ASSERT_TRUE(store.write(fileOf({recordOf("a", 1, 1h)})));
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
    const CommandResult result = signedOut("a");
    EXPECT_EQ(result.code, ExitCode::failure);
    EXPECT_THAT(result.error, HasSubstr("The keyring is locked."));
    EXPECT_EQ(refreshToken("a"), "Ra");
    EXPECT_EQ(store.read(), fileOf({recordOf("a", 1, 1h)}));
}

TEST_F(SignOutCommandTest, ForgetsTheNumbersWhereThereIsNoKeyring)
{
    ASSERT_TRUE(store.write(fileOf({recordOf("a", 1, 1h)})));
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::noService};
    const CommandResult result = signedOut("a");
    EXPECT_EQ(result.code, ExitCode::fine);
    EXPECT_THAT(result.output, HasSubstr("There is no keyring here"));
    EXPECT_EQ(store.read(), fileOf({}));
    EXPECT_EQ(signedOut("a").code, ExitCode::failure);
}

TEST_F(SignOutCommandTest, ChangesNothingWhenItIsStopped)
{
    signIn("a");
    ASSERT_TRUE(store.write(fileOf({recordOf("a", 1, 1h)})));
    std::stop_source source;
    source.request_stop();
    EXPECT_EQ(await(runSignOut("a", services(), source.get_token())).error, "brisken-roost: Stopped.\n");
    EXPECT_EQ(refreshToken("a"), "Ra");
    EXPECT_EQ(store.read(), fileOf({recordOf("a", 1, 1h)}));
}

TEST_F(SignOutCommandTest, ChangesNothingWhileAnotherProcessRefreshesForTooLong)
{
    signIn("a");
    ASSERT_TRUE(store.write(fileOf({recordOf("a", 1, 1h)})));
    lock.isFree = false;
    EXPECT_EQ(signedOut("a").error, "brisken-roost: Something went wrong. Try again.\n");
    EXPECT_EQ(refreshToken("a"), "Ra");
    EXPECT_EQ(store.read(), fileOf({recordOf("a", 1, 1h)}));
}

} // namespace
} // namespace roost::test
