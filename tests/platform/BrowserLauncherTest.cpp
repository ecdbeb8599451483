#include "platform/BrowserLauncher.h"

#include "tests/platform/PollUntil.h"
#include "tests/platform/ScratchDesktop.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/LogCatcher.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <csignal>

namespace roost::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Trouble = BrowserOpener::Trouble;

const std::string address = "https://roost.example/authorize?state=canary&x=$(id)&y='a'%20b";

/// A launcher, and what it says of its troubles.
struct Launch {
    ScratchDesktop desktop;
    std::vector<Trouble> troubles;
    std::unique_ptr<BrowserLauncher> launcher;

    void open()
    {
        launcher = std::make_unique<BrowserLauncher>(desktop.environment);
        launcher->open(*WebURL::parse(address), [this](Trouble trouble) { troubles.push_back(trouble); });
    }

    /// An opener that notes things in the file "seen" when it is done.
    void opener(const std::string& text) const
    {
        const std::string seen = (desktop / "seen").string();
        desktop.script("xdg-open",
                       "(" + text + ") >'" + seen + ".new'; mv '" + seen + ".new' '" + seen + "'");
    }

    bool waitForSeen() const
    {
        return pollUntil([this] { return fs::exists(desktop / "seen"); });
    }
    std::string seen() const { return bytesOf(desktop / "seen"); }
};

TEST(BrowserLauncher, GivesTheAddressToTheOpenerAsOneArgument)
{
    Launch launch;
    launch.opener(R"(echo $#; printf '%s\n' "$@")");
    launch.open();
    ASSERT_TRUE(launch.waitForSeen());
    EXPECT_EQ(launch.seen(), "1\n" + address + "\n");
    EXPECT_FALSE(pollUntil([&] { return !launch.troubles.empty(); }, 50ms));
}

TEST(BrowserLauncher, GivesTheOpenerItsEnvironmentAndNoTerminal)
{
    Launch launch;
    launch.desktop.set("ROOST_MARK", "mark");
    launch.opener(
        R"sh(echo $ROOST_MARK; readlink /proc/$$/fd/0 /proc/$$/fd/2; read -r _ _ _ _ _ session _ </proc/$$/stat; [ $session = $$ ] && echo apart)sh");
    launch.open();
    ASSERT_TRUE(launch.waitForSeen());
    EXPECT_EQ(launch.seen(), "mark\n/dev/null\n/dev/null\napart\n");
}

TEST(BrowserLauncher, SaysAtOnceThatThereIsNoDisplay)
{
    Launch launch;
    launch.opener("echo started");
    launch.desktop.set("DISPLAY", "");
    launch.open();
    EXPECT_THAT(launch.troubles, ElementsAre(Trouble::noDisplay));
    EXPECT_FALSE(pollUntil([&] { return fs::exists(launch.desktop / "seen"); }, 100ms));
}

TEST(BrowserLauncher, IsContentWithADisplayOfEitherKind)
{
    Launch launch;
    launch.opener("echo started");
    launch.desktop.environment.remove(QStringLiteral("DISPLAY"));
    launch.desktop.set("WAYLAND_DISPLAY", "wayland-0");
    launch.open();
    EXPECT_TRUE(launch.waitForSeen());
    EXPECT_THAT(launch.troubles, IsEmpty());
}

TEST(BrowserLauncher, SaysThatThereIsNoOpener)
{
    Launch launch;
    for (const std::string& path : {(launch.desktop / "bin").string(), std::string{}}) {
        launch.troubles.clear();
        launch.desktop.set("PATH", path);
        launch.open();
        EXPECT_THAT(launch.troubles, ElementsAre(Trouble::noOpener)) << path;
    }
}

TEST(BrowserLauncher, SaysThatTheOpenerFailed)
{
    Launch launch;
    for (const char* end : {"exit 3", "kill -9 $$"}) {
        launch.troubles.clear();
        launch.desktop.script("xdg-open", end);
        launch.open();
        EXPECT_TRUE(pollUntil([&] { return !launch.troubles.empty(); }));
        EXPECT_THAT(launch.troubles, ElementsAre(Trouble::failed)) << end;
    }
}

TEST(BrowserLauncher, NoticesThatTheRealOpenerFindsNoBrowser)
{
    Launch launch;
    launch.desktop.set("BROWSER", "/nowhere/browser");
    launch.open();
    EXPECT_TRUE(pollUntil([&] { return !launch.troubles.empty(); }));
    EXPECT_THAT(launch.troubles, ElementsAre(Trouble::failed));
}

TEST(BrowserLauncher, OpensTheUsersBrowserByTheRealOpener)
{
    Launch launch;
    const std::string seen = (launch.desktop / "seen").string();
    const fs::path browser = launch.desktop.script("browser", "printf '%s' \"$1\" >'" + seen + ".new'; mv '" +
                                                                  seen + ".new' '" + seen + "'");
    fs::create_directory(launch.desktop / "data" / "applications");
    putBytes(launch.desktop / "data" / "applications" / "browser.desktop",
             "[Desktop Entry]\nType=Application\nName=Browser\nExec=" + browser.string() +
                 " %u\nMimeType=x-scheme-handler/https;\n");
    launch.open();
    ASSERT_TRUE(launch.waitForSeen());
    EXPECT_EQ(launch.seen(), address);
}

TEST(BrowserLauncher, LetsTheBrowserOutliveIt)
{
    Launch launch;
    launch.desktop.script("xdg-open", "trap 'exit 1' TERM INT HUP; echo $$ >'" +
                                          (launch.desktop / "seen").string() + "'; sleep 100 & wait");
    launch.open();
    ASSERT_TRUE(launch.waitForSeen());
    ASSERT_TRUE(pollUntil([&] { return launch.seen().ends_with('\n'); }));
    const pid_t browser = std::stoi(launch.seen());
    launch.launcher.reset();
    EXPECT_FALSE(pollUntil([&] { return ::kill(browser, 0) != 0; }, 100ms));
    ::kill(-browser, SIGKILL);
    EXPECT_THAT(launch.troubles, IsEmpty());
}

TEST(BrowserLauncher, PrintsNothingOfTheAddressAndNothingOfTheOpener)
{
    const LogCatcher log;
    const std::string printed = inChildProcess([] {
        const ScratchFolder folder;
        const std::string file = (folder / "printed").string();
        if (std::freopen(file.c_str(), "w", stdout) == nullptr || ::dup2(STDOUT_FILENO, STDERR_FILENO) < 0) {
            return std::string{"not caught"};
        }
        ScratchDesktop desktop;
        desktop.script("xdg-open", "echo \"$1\"; echo \"$1\" >&2; exit 3");
        BrowserLauncher launcher(desktop.environment);
        bool isFailed = false;
        launcher.open(*WebURL::parse(address), [&isFailed](Trouble) { isFailed = true; });
        const bool isSeen = pollUntil([&] { return isFailed; });
        std::fflush(stdout);
        return isSeen ? bytesOf(file) : "not failed";
    });
    EXPECT_EQ(printed, "");
    EXPECT_THAT(log.lines(), IsEmpty());
}

} // namespace
} // namespace roost::test
