#include "tests/end-to-end/RealBrowser.h"

#include "tests/end-to-end/UserMachine.h"
#include "tests/platform/PollUntil.h"

#include <gmock/gmock.h>

#include <QJsonObject>

#include <csignal>

namespace roost::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

const std::string cafe = "cafe-morgenrot";
const std::string mira = "mira-okafor";

/// The program on a user's machine, and the real browser of that user.
class ARealBrowser : public testing::Test {
protected:
    void SetUp() override
    {
        if (!RealBrowser::isInstalled()) {
            GTEST_SKIP() << "Chromium and chromedriver are not installed here.";
        }
    }

    RealBrowser& browser(const std::vector<std::string>& environment = {})
    {
        browser_ = std::make_unique<RealBrowser>(machine.service.base(), environment);
        return *browser_;
    }

    static void allow(RealBrowser& browser, const std::string& profile)
    {
        browser.click("input[value=" + profile + "]");
        browser.click("#allow");
    }

    Finished signIn(RealBrowser& browser, const std::string& profile)
    {
        const auto program = machine.start(u"sign-in"_s);
        browser.open(machine.addressForTheBrowser());
        allow(browser, profile);
        return program->end();
    }

    void expectNothingStored()
    {
        EXPECT_EQ(machine.run(u"accounts"_s).code, 3);
        EXPECT_EQ(machine.keptItems(), 1) << "the client id alone";
        EXPECT_THAT(machine.status(), IsEmpty());
        EXPECT_EQ(machine.service.state().authorization.grantCount(), 0);
    }

    UserMachine machine;

private:
    std::unique_ptr<RealBrowser> browser_;
};

TEST_F(ARealBrowser, SignsInToTheChosenProfileUntilTheServiceEndsIt)
{
    // By the bus alone: the socket is in another folder.
    const Finished signedIn = signIn(browser({"XDG_RUNTIME_DIR=" + machine.folder().string()}), cafe);
    EXPECT_EQ(signedIn.code, 0) << signedIn.error;
    EXPECT_EQ(signedIn.output, "Signed in to Café Morgenröte.\n");
    EXPECT_EQ(machine.keptTokens(cafe), 1);
    EXPECT_EQ(machine.run(u"accounts"_s).output, "cafe-morgenrot  signed in  Café Morgenröte\n");
    const QJsonObject first = machine.status();
    EXPECT_EQ(first[u"profileId"_s], u"cafe-morgenrot"_s);
    EXPECT_EQ(first[u"state"_s], u"fresh"_s);

    machine.service.state().advanced = 6h;
    const Finished synced = machine.run(u"sync"_s);
    EXPECT_EQ(synced.code, 0) << synced.error;
    EXPECT_EQ(synced.output, "Café Morgenröte: updated\n");
    const QJsonObject second = machine.status();
    EXPECT_EQ(second[u"state"_s], u"fresh"_s);
    EXPECT_NE(second[u"viewsTotal"_s], first[u"viewsTotal"_s]);

    machine.service.revoke(cafe);
    const Finished revoked = machine.run(u"sync"_s);
    EXPECT_EQ(revoked.code, 3);
    EXPECT_EQ(revoked.output, "Café Morgenröte: signed out; run brisken-roost sign-in\n");
    EXPECT_EQ(machine.keptTokens(cafe), 0);
    const QJsonObject last = machine.status();
    EXPECT_EQ(last[u"state"_s], u"signedOut"_s);
    EXPECT_EQ(last[u"viewsTotal"_s], second[u"viewsTotal"_s]);
    EXPECT_EQ(last[u"fetchedAt"_s], second[u"fetchedAt"_s]);
}

TEST_F(ARealBrowser, SignsInToOneProfileAfterAnotherAndToOneAgain)
{
    RealBrowser& chromium = browser();
    EXPECT_EQ(signIn(chromium, mira).output, "Signed in to Mira Okafor.\n");
    EXPECT_EQ(signIn(chromium, cafe).output, "Signed in to Café Morgenröte.\n");
    EXPECT_EQ(signIn(chromium, mira).output, "Signed in to Mira Okafor.\n");
    EXPECT_EQ(machine.keptTokens(mira), 1);
    EXPECT_EQ(machine.keptTokens(cafe), 1);
    EXPECT_EQ(machine.keptItems(), 3) << "and one client id";
    EXPECT_EQ(machine.service.state().authorization.clientCount(), 1);
    EXPECT_EQ(machine.run(u"sync"_s).output, "Café Morgenröte: updated\nMira Okafor: updated\n");
    EXPECT_EQ(machine.service.state().counters.refreshTokenReuses(), 0);
}

TEST_F(ARealBrowser, LeavesNothingWhenItsUserDeniesOrClosesIt)
{
    RealBrowser& chromium = browser();
    const auto denied = machine.start(u"sign-in"_s);
    chromium.open(machine.addressForTheBrowser());
    chromium.click("#deny");
    const Finished afterDenial = denied->end();
    EXPECT_EQ(afterDenial.code, 1);
    EXPECT_THAT(afterDenial.error, EndsWith("brisken-roost: The sign-in was cancelled.\n"));
    expectNothingStored();

    const auto abandoned = machine.start(u"sign-in"_s);
    chromium.open(machine.addressForTheBrowser());
    chromium.close();
    abandoned->signal(SIGINT);
    const Finished afterClosing = abandoned->end();
    EXPECT_EQ(afterClosing.code, 1);
    EXPECT_THAT(afterClosing.error, EndsWith("brisken-roost: The sign-in was cancelled.\n"));
    expectNothingStored();
}

TEST_F(ARealBrowser, FindsItsWayBackWithoutABus)
{
    const Finished signedIn = signIn(
        browser({"DBUS_SESSION_BUS_ADDRESS=unix:path=" + (machine.folder() / "no bus").string()}), mira);
    EXPECT_EQ(signedIn.output, "Signed in to Mira Okafor.\n") << signedIn.error;
    EXPECT_EQ(machine.keptTokens(mira), 1);
}

TEST_F(ARealBrowser, SignsInOnAnotherMachineWhoseUserCarriesTheAddressOver)
{
    const std::filesystem::path callback = machine.folder() / "callback";
    machine.script("xdg-open", "printf '%s' \"$1\" >'" + callback.string() + ".new' && mv '" +
                                   callback.string() + ".new' '" + callback.string() + "'");
    RealBrowser& elsewhere =
        browser({"PATH=" + machine.folder().string() + ":" + qgetenv("PATH").toStdString()});

    const auto program = machine.start(u"sign-in"_s, machine.withoutDisplay());
    elsewhere.open(program->addressToOpen());
    program->enter("briskenroost://oauth/callback?state=another&code=another");
    program->awaitError("That address belongs to another sign-in.\n");
    allow(elsewhere, mira);
    ASSERT_TRUE(pollUntil([&] { return std::filesystem::exists(callback); }, browserGuard));
    EXPECT_THAT(bytesOf(callback), StartsWith("briskenroost://"));
    program->enter(bytesOf(callback));
    const Finished signedIn = program->end();
    EXPECT_EQ(signedIn.code, 0) << signedIn.error;
    EXPECT_EQ(signedIn.output, "Signed in to Mira Okafor.\n");
    EXPECT_EQ(machine.keptTokens(mira), 1);
}

} // namespace
} // namespace roost::test
