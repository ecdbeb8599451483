#include "programs/brisken-roost/AccountsCommand.h"

#include "tests/programs/brisken-roost/AccountWorld.h"
#include "tests/support/Await.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

class AccountsCommandTest : public AccountWorld {
protected:
    CommandResult listed() { return await(runAccounts(services())); }
};

TEST_F(AccountsCommandTest, ListsTheProfilesInTheOrderOfTheFile)
{
    signIn("beta");
    signIn("a");
    signIn("new");
    RoostAccountRecord gone = recordOf("gone", 1, 1h);
    gone.profileName = "日本";
    RoostAccountRecord beta = recordOf("beta", 1, 1h);
    beta.profileName = "Beta";
    RoostAccountRecord first = recordOf("a", 1, 1h);
    first.profileName = "First";
    ASSERT_TRUE(store.write(fileOf({beta, gone, first})));
    const CommandResult result = listed();
    EXPECT_EQ(result.code, ExitCode::fine);
    EXPECT_EQ(result.output, "beta  signed in   Beta\n"
                             "gone  signed out  日本\n"
                             "a     signed in   First\n"
                             "new   signed in   Profile\n");
}

TEST_F(AccountsCommandTest, SaysThatThereIsNone)
{
    EXPECT_EQ(listed().code, ExitCode::nothingToShow);
    EXPECT_THAT(listed().error, HasSubstr("No profile is signed in here yet."));
}

TEST_F(AccountsCommandTest, CallsNobodySignedOutWhileTheKeyringIsLocked)
{
    ASSERT_TRUE(store.write(fileOf({recordOf("a", 1, 1h)})));
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
    const CommandResult result = listed();
    EXPECT_EQ(result.code, ExitCode::failure);
    EXPECT_THAT(result.output, HasSubstr("a  unknown  "));
    EXPECT_THAT(result.error, HasSubstr("The keyring is locked."));
}

TEST_F(AccountsCommandTest, LetsNoTextSteerTheTerminal)
{
    signIn("\x1b[2J");
    EXPECT_EQ(listed().output, "·[2J  signed in  Profile\n");
}

} // namespace
} // namespace roost::test
