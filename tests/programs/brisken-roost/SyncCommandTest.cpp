#include "programs/brisken-roost/SyncCommand.h"

#include "tests/programs/brisken-roost/AccountWorld.h"
#include "tests/support/Await.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

class SyncCommandTest : public AccountWorld {
protected:
    SyncCommandTest()
    {
        signIn("a");
        EXPECT_TRUE(store.write(fileOf({recordOf("a", 1, 1h)})));
        service.answer(path::token, 200, tokensOfExample("A", "R2"));
        service.answer(path::widget, 200, json(snapshotOf("a", 48213)));
    }

    CommandResult synced(std::optional<std::string> id = {}) { return await(runSync(id, services(), {})); }

    const std::string name = snapshotOf("a", 1).profile.name;
};

TEST_F(SyncCommandTest, FetchesAndKeepsTheNumbers)
{
    const CommandResult result = synced();
    EXPECT_EQ(result.code, ExitCode::fine);
    EXPECT_EQ(result.output, name + ": updated\n");
    EXPECT_EQ(store.read(), fileOf({recordOf("a", 48213, 0s)}));
    EXPECT_EQ(refreshToken("a"), "R2");
    EXPECT_THAT(lock.locked, ElementsAre("a"));
}

TEST_F(SyncCommandTest, SyncsOneProfileOrAll)
{
    signIn("b");
    EXPECT_EQ(synced("a").code, ExitCode::fine);
    EXPECT_EQ(refreshToken("b"), "Rb");
    EXPECT_EQ(synced().code, ExitCode::fine);
    EXPECT_EQ(refreshToken("b"), "R2");
    EXPECT_THAT(service.requests(path::token), SizeIs(3));
}

TEST_F(SyncCommandTest, KeepsTheLastNumbersOnFailure)
{
    service.answerOnly(path::widget, HttpResponse{503, {{"Retry-After", "120"}}, {}});
    const CommandResult result = synced();
    EXPECT_EQ(result.code, ExitCode::failure);
    EXPECT_EQ(result.output, name + ": failed (unavailable, retry after 120 s), keeping the last numbers\n");
    RoostAccountRecord tried = recordOf("a", 1, 1h);
    tried.lastAttemptAt = noon;
    EXPECT_EQ(store.read(), fileOf({tried}));
    EXPECT_EQ(refreshToken("a"), "R2");
}

TEST_F(SyncCommandTest, SaysThatAProfileIsSignedOut)
{
    service.answerOnly(path::token, 400, R"({"error":"invalid_grant"})");
    const CommandResult result = synced();
    EXPECT_EQ(result.code, ExitCode::nothingToShow);
    EXPECT_THAT(result.output, HasSubstr(name + ": signed out"));
    EXPECT_EQ(file().record("a")->status, RoostAccountRecord::Status::signedOut);
    EXPECT_EQ(file().record("a")->snapshot, recordOf("a", 1, 1h).snapshot);
    EXPECT_EQ(refreshToken("a"), std::nullopt);
}

TEST_F(SyncCommandTest, EndsAsAFailureWhenOneOfSeveralFailed)
{
    signIn("b");
    service.answerOnly(path::widget, 503, "");
    service.answer(path::widget, 403, "");
    const CommandResult result = synced();
    EXPECT_EQ(result.code, ExitCode::failure);
    EXPECT_THAT(result.output, HasSubstr("b: signed out"));
}

TEST_F(SyncCommandTest, SignsNobodyOutWhileTheKeyringIsLocked)
{
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
    const CommandResult result = synced();
    EXPECT_EQ(result.code, ExitCode::failure);
    EXPECT_THAT(result.error, HasSubstr("The keyring is locked."));
    EXPECT_EQ(store.read(), fileOf({recordOf("a", 1, 1h)}));
}

TEST_F(SyncCommandTest, HasNothingToDoWhereNobodyIsSignedIn)
{
    EXPECT_EQ(synced("x").code, ExitCode::nothingToShow);
    EXPECT_THAT(synced("x").error, HasSubstr("The profile \"x\" is not signed in here."));
    secrets.values.clear();
    EXPECT_EQ(synced().code, ExitCode::nothingToShow);
    EXPECT_THAT(synced().error, HasSubstr("No profile is signed in here yet."));
}

TEST_F(SyncCommandTest, SaysWhenTheRenewedSignInIsLost)
{
    secrets.failWrites = true;
    secrets.values["client-id|https://roost.example"] = "c";
    const CommandResult result = synced();
    EXPECT_EQ(result.code, ExitCode::failure);
    EXPECT_THAT(result.output, HasSubstr("updated; the keyring did not take the renewed sign-in"));
    EXPECT_EQ(store.read(), fileOf({recordOf("a", 48213, 0s)}));
}

TEST_F(SyncCommandTest, BringsNoProfileBackThatWasSignedOutMeanwhile)
{
    service.answerOnly(path::widget, 200, json(snapshotOf("a", 48213)));
    lock.whenReleased = [this] {
        secrets.values.erase("refresh-token|a");
        static_cast<void>(file().remove("a"));
    };
    const CommandResult result = synced();
    EXPECT_EQ(result.code, ExitCode::nothingToShow);
    EXPECT_THAT(result.output, HasSubstr("signed out meanwhile"));
    EXPECT_EQ(store.read(), fileOf({}));
}

TEST_F(SyncCommandTest, StopsBetweenProfiles)
{
    std::stop_source source;
    source.request_stop();
    const CommandResult result = await(runSync(std::nullopt, services(), source.get_token()));
    EXPECT_EQ(result.code, ExitCode::failure);
    EXPECT_EQ(result.error, "brisken-roost: Stopped.\n");
    EXPECT_EQ(refreshToken("a"), "Ra");
}

TEST_F(SyncCommandTest, SaysWhenTheNumbersCannotBeWritten)
{
    AccountServices parts = services();
    parts.file = AccountFile{{files, "/proc/nowhere"}, [] { return noon; }};
    const CommandResult result = await(runSync(std::nullopt, parts, {}));
    EXPECT_EQ(result.code, ExitCode::failure);
    EXPECT_THAT(result.output, HasSubstr("updated; the numbers could not be written"));
    EXPECT_EQ(refreshToken("a"), "R2");
}

} // namespace
} // namespace roost::test
