#include "service/NetworkHttpSession.h"
#include "tests/end-to-end/UserMachine.h"
#include "tests/support/Await.h"
#include "tests/support/ConsentingBrowser.h"
#include "tests/support/Poll.h"
#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>

#include <QJsonObject>

#include <csignal>

namespace roost::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using local::Endpoint;
using testing::HasSubstr;

const std::string mira = "mira-okafor";

/// The commands beside the real app, each a process of its own.
class AppCommandProcesses : public testing::Test {
protected:
    AppCommandProcesses() { machine.service.setConsent({local::Consent::Answer::allow, mira}); }

    /// Returns when the app is on the bus.
    std::unique_ptr<ProgramRun> startApp() const
    {
        auto app = machine.start(u"run --headless"_s);
        poll("the app to be there", [this] { return machine.run(u"sign-in --cancel"_s).error.empty(); });
        return app;
    }

    void signIn()
    {
        const auto command = machine.start(u"sign-in"_s);
        NetworkHttpSession network;
        ConsentingBrowser browser{network};
        const std::string address = machine.addressForTheBrowser();
        const std::string callback = *await(browser.authenticate(*WebURL::parse(address), {}, {}));
        EXPECT_EQ(ProgramRun({QString::fromStdString(callback)}, machine.environment).end().code, 0);
        const Finished signedIn = command->end();
        EXPECT_EQ(signedIn.output, "Signed in to Mira Okafor.\n") << signedIn.error;
    }

    int tokenRequests() { return machine.service.state().counters.requests(Endpoint::token); }

    UserMachine machine;
};

TEST_F(AppCommandProcesses, HaveTheAppDoTheWork)
{
    const auto app = startApp();
    signIn();
    EXPECT_EQ(machine.run(u"accounts"_s).output, "mira-okafor  signed in  Mira Okafor\n");
    EXPECT_EQ(machine.status()[u"profileId"_s].toString(), QString::fromStdString(mira));
    // The app has an access token; whoever did the work in its place would have to ask for one.
    const int before = tokenRequests();
    EXPECT_EQ(machine.run(u"refresh --wait"_s).output, "Mira Okafor: updated\n");
    EXPECT_EQ(machine.run(u"sync mira-okafor"_s).output, "Mira Okafor: updated\n");
    EXPECT_EQ(machine.run(u"refresh"_s).code, 0);
    EXPECT_EQ(machine.run(u"select mira-okafor"_s).code, 0);
    EXPECT_EQ(tokenRequests(), before);

    const Finished second = machine.run(u"run"_s);
    EXPECT_EQ(second.code, 0);
    EXPECT_EQ(second.error, "Brisken Roost is running already.\n");

    EXPECT_THAT(machine.run(u"sign-out mira-okafor"_s).output, HasSubstr("Signed out of Mira Okafor."));
    EXPECT_EQ(machine.keptTokens(mira), 0);
    EXPECT_EQ(machine.run(u"accounts"_s).code, 3);

    EXPECT_EQ(machine.run(u"quit"_s).code, 0);
    EXPECT_EQ(app->end().code, 0);
    EXPECT_EQ(machine.run(u"quit"_s).error, "Brisken Roost is not running.\n");
}

TEST_F(AppCommandProcesses, HaveTheAppOpenedAtLoginFromTheFirstSignInOn)
{
    const auto entry = machine.bus.home() / "config" / "autostart" / "world.brisken.roost.mac.desktop";
    const auto app = startApp();
    EXPECT_FALSE(std::filesystem::exists(entry));
    signIn();
    EXPECT_THAT(bytesOf(entry), HasSubstr("\nExec=" BRISKEN_ROOST " run\n"));

    std::filesystem::remove(entry);
    machine.run(u"sign-out mira-okafor"_s);
    signIn();
    EXPECT_FALSE(std::filesystem::exists(entry)) << "that is for the user to say";
}

TEST_F(AppCommandProcesses, DoTheWorkThemselvesWithoutTheApp)
{
    auto app = startApp();
    signIn();
    EXPECT_EQ(machine.run(u"quit"_s).code, 0);
    EXPECT_EQ(app->end().code, 0);

    const int before = tokenRequests();
    EXPECT_EQ(machine.run(u"refresh"_s).output, "Mira Okafor: updated\n");
    EXPECT_EQ(tokenRequests(), before + 1);
    EXPECT_EQ(machine.run(u"select mira-okafor"_s).code, 0);
    EXPECT_EQ(machine.run(u"select nobody"_s).code, 3);

    app = startApp();
    EXPECT_EQ(machine.run(u"refresh --wait"_s).output, "Mira Okafor: updated\n");
    EXPECT_EQ(machine.service.state().counters.refreshTokenReuses(), 0);
}

TEST_F(AppCommandProcesses, KeepTheAppWaitingThatIsStartedMeanwhile)
{
    auto app = startApp();
    signIn();
    EXPECT_EQ(machine.run(u"quit"_s).code, 0);
    EXPECT_EQ(app->end().code, 0);

    local::Scenario late;
    late.kind = local::Scenario::Kind::delay;
    late.delay = 2s;
    machine.service.state().scenarios.set(local::ScenarioBook::everyone, Endpoint::token, late);
    const int before = tokenRequests();
    const auto command = machine.start(u"sync"_s);
    ASSERT_TRUE(runUntil([&] { return tokenRequests() > before; }, browserGuard));
    app = machine.start(u"run"_s);
    app->awaitError("Brisken Roost starts when the commands that are under way have ended");
    EXPECT_EQ(command->end().output, "Mira Okafor: updated\n");
    EXPECT_EQ(machine.run(u"refresh --wait"_s).output, "Mira Okafor: updated\n");
    app->signal(SIGTERM);
    EXPECT_EQ(app->end().code, 0);
    EXPECT_EQ(machine.service.state().counters.refreshTokenReuses(), 0);
}

} // namespace
} // namespace roost::test
