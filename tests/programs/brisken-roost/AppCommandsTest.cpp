#include "programs/brisken-roost/AppCommands.h"

#include "tests/bus/ModelOnBus.h"

#include <gmock/gmock.h>

#include <cstdio>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;

/// What is written for the user.
class Paper {
public:
    std::FILE* file() const { return file_; }
    std::string text() const
    {
        std::fflush(file_);
        return {bytes_, size_};
    }
    ~Paper()
    {
        std::fclose(file_);
        std::free(bytes_); // NOLINT: that is how it was made
    }
    Paper() = default;
    Paper(const Paper&) = delete;
    Paper& operator=(const Paper&) = delete;

private:
    char* bytes_ = nullptr;
    std::size_t size_ = 0;
    std::FILE* file_ = ::open_memstream(&bytes_, &size_);
};

class AppCommandsTest : public testing::Test, protected ModelOnBus {
protected:
    AppCommandsTest()
    {
        world.signInBefore("p1");
        world.signInBefore("p2");
        startOnBus();
        EXPECT_TRUE(await(app->connectToApp()));
    }

    CommandResult refresh(std::optional<std::string> profileId = {})
    {
        world.time.advance(10s);
        return awaitInTime(AppCommands::refresh(app, std::move(profileId), stop.get_token()));
    }
    QCoro::Task<CommandResult> signIn()
    {
        return AppCommands::signIn(app, {paper.file(), false, {}}, stop.get_token());
    }
    /// Every profile is read at a moment of its own.
    void takeTime()
    {
        world.roost.latency = [] { return 5ms; };
    }

    Paper paper;
    std::stop_source stop;
    AppCommands::App app = std::make_shared<ModelProxy>(bus().address());
};

TEST_F(AppCommandsTest, RefreshTellsWhatCameOfEachProfile)
{
    takeTime();
    const CommandResult result = refresh();
    EXPECT_EQ(result.output, "Profile p1: updated\nProfile p2: updated\n");
    EXPECT_EQ(result.code, ExitCode::fine);
    EXPECT_EQ(refresh("p2").output, "Profile p2: updated\n");
}

TEST_F(AppCommandsTest, RefreshTellsFailuresAndVerdicts)
{
    takeTime();
    world.roost.revoke("p1");
    world.roost.expire("p1");
    world.roost.trouble = [this](const HttpRequest& request) {
        return world.roost.profileOf(request) == "p2" ? std::optional{response(503)} : std::nullopt;
    };
    const CommandResult result = refresh();
    EXPECT_EQ(result.output, "Profile p1: signed out; run brisken-roost sign-in\n"
                             "Profile p2: failed, keeping the last numbers\n");
    EXPECT_EQ(result.code, ExitCode::failure);
    const CommandResult next = refresh("p1");
    EXPECT_EQ(next.code, ExitCode::nothingToShow);
    EXPECT_THAT(next.error, HasSubstr("The profile \"p1\" is not signed in here."));
}

TEST_F(AppCommandsTest, RefreshFindsNobodyToRefresh)
{
    await(world.app().signOut("p1"));
    await(world.app().signOut("p2"));
    ASSERT_TRUE(await(app->connectToApp()));
    EXPECT_THAT(refresh().error, HasSubstr("No profile is signed in here yet."));
}

TEST_F(AppCommandsTest, RefreshStopsWaiting)
{
    world.time.advance(10s);
    world.roost.latency = [] { return 10s; };
    Pending refreshing(AppCommands::refresh(app, {}, stop.get_token()));
    ASSERT_TRUE(runUntil([&] { return world.state().isRefreshing(); }));
    stop.request_stop();
    EXPECT_EQ(refreshing.get().code, ExitCode::failure);
    EXPECT_TRUE(world.state().isRefreshing());
}

TEST_F(AppCommandsTest, RefreshSaysThatTheAppHasGone)
{
    disappear();
    EXPECT_EQ(refresh().error, "brisken-roost: Brisken Roost does not answer.\n");
}

TEST_F(AppCommandsTest, SignInTellsTheAddressAndWhoSignedIn)
{
    world.roost.profiles.emplace("p3", numbersOf("p3", world.time.now()));
    world.browser.profileOfNextSignIn = "p3";
    world.browser.hesitation = 500ms;
    const CommandResult result = awaitInTime(signIn());
    EXPECT_EQ(result.output, "Signed in to Profile p3.\n");
    EXPECT_EQ(result.code, ExitCode::fine);
    EXPECT_THAT(paper.text(), HasSubstr("open this address:\n\n  https://roost.test/"));
}

TEST_F(AppCommandsTest, SignInTellsWhyItFailed)
{
    world.browser.profileOfNextSignIn = "p1";
    world.browser.wrongState = "x";
    const CommandResult result = awaitInTime(signIn());
    EXPECT_EQ(result.error,
              "brisken-roost: The sign-in did not complete safely, so nothing was saved. Try again.\n");
    EXPECT_EQ(result.code, ExitCode::failure);
}

TEST_F(AppCommandsTest, SignInIsGivenUpOnAStop)
{
    world.browser.hesitation = 1h;
    Pending signingIn(signIn());
    EXPECT_TRUE(awaitInTime(app->signInAddress()));
    stop.request_stop();
    EXPECT_EQ(signingIn.get().error, "brisken-roost: The sign-in was cancelled.\n");
    EXPECT_TRUE(std::holds_alternative<SignInState::Idle>(world.state().signInState()));
}

TEST_F(AppCommandsTest, SignInDoesNotBeginBesideAnother)
{
    world.browser.hesitation = 1h;
    world.app().signIn();
    ASSERT_TRUE(await(app->connectToApp()));
    EXPECT_THAT(await(signIn()).error, HasSubstr("A sign-in is running already."));
    EXPECT_EQ(await(AppCommands::cancelSignIn(app)).code, ExitCode::fine);
    ASSERT_TRUE(
        runUntil([&] { return std::holds_alternative<SignInState::Idle>(world.state().signInState()); }));
    EXPECT_EQ(await(AppCommands::cancelSignIn(app)).code, ExitCode::fine);
}

TEST_F(AppCommandsTest, SignOutForgetsTheProfile)
{
    const CommandResult result = await(AppCommands::signOut(app, "p1"));
    EXPECT_EQ(result.output,
              "Signed out of Profile p1. Roost lists this connection until you end it there.\n");
    EXPECT_EQ(world.stored("p1"), "");
    EXPECT_EQ(await(AppCommands::signOut(app, "p1")).code, ExitCode::nothingToShow);
    disappear();
    EXPECT_EQ(await(AppCommands::signOut(app, "p2")).code, ExitCode::failure);
}

TEST_F(AppCommandsTest, AccountsListsWhomTheAppKnows)
{
    world.roost.revoke("p1");
    world.roost.expire("p1");
    refresh();
    ASSERT_TRUE(await(app->connectToApp()));
    EXPECT_EQ(AppCommands::accounts(app->state()).output, "p1  signed out  Profile p1\n"
                                                          "p2  signed in   Profile p2\n");
    EXPECT_EQ(AppCommands::accounts(AppState{}).code, ExitCode::nothingToShow);
}

TEST_F(AppCommandsTest, SelectHasTheProfileShown)
{
    EXPECT_EQ(await(AppCommands::select(app, "p2")).code, ExitCode::fine);
    EXPECT_EQ(world.state().selectedProfileID(), "p2");
    EXPECT_EQ(await(AppCommands::select(app, "p9")).code, ExitCode::nothingToShow);
    EXPECT_EQ(world.state().selectedProfileID(), "p2");
}

} // namespace
} // namespace roost::test
