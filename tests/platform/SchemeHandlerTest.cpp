#include "platform/SchemeHandler.h"

#include "model/RealFileSystem.h"
#include "model/RoostLog.h"
#include "platform/BrowserLauncher.h"
#include "tests/platform/PollUntil.h"
#include "tests/platform/ScratchDesktop.h"
#include "tests/support/Await.h"
#include "tests/support/FailingFileSystem.h"
#include "tests/support/LogCatcher.h"

#include <gmock/gmock.h>

#include <QProcess>

namespace roost::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::HasSubstr;
using Handler = SchemeHandler::Handler;
using Kind = Handler::Kind;

const std::string entryFile = SchemeHandler::entryName.toStdString();
const Handler ours{Kind::ours, SchemeHandler::entryName};

/// The desktop of a user, with a program of ours that notes its arguments, one per line.
struct Desktop : ScratchDesktop {
    RealFileSystem files;
    fs::path arguments = *this / "arguments";
    fs::path program =
        script("brisken-roost", R"(printf '%s\n' "$@" >")" + arguments.string() + ".new\"; mv \"" +
                                    arguments.string() + ".new\" \"" + arguments.string() + '"');
    fs::path applications = *this / "data" / "applications";

    SchemeHandler handlerOf(const fs::path& what) { return {files, what, environment, guardTime}; }
    SchemeHandler handler() { return handlerOf(program); }
    Handler claim() { return await(handler().claim({})); }
    Handler whoIs() { return await(handler().handler({})); }

    /// Another program that wants the scheme.
    void addRival(const std::string& name, const fs::path& folder) const
    {
        fs::create_directories(folder);
        putBytes(folder / name, "[Desktop Entry]\nType=Application\nName=Rival\nExec=/bin/true %u\n"
                                "MimeType=x-scheme-handler/briskenroost;\n");
    }
};

TEST(SchemeHandler, FindsNobodyAtFirst)
{
    Desktop desktop;
    EXPECT_EQ(desktop.whoIs(), (Handler{Kind::nobody, {}}));
}

TEST(SchemeHandler, InstallsTheEntryForTheUser)
{
    Desktop desktop;
    EXPECT_EQ(desktop.handler().install(), std::error_code{});
    EXPECT_THAT(bytesOf(desktop.applications / entryFile),
                HasSubstr("\nExec=" + desktop.program.string() + " %u\n"));
    EXPECT_EQ(std::distance(fs::directory_iterator{desktop.applications}, {}), 1)
        << "no temporary file stays";
}

TEST(SchemeHandler, InstallsBelowTheHomeFolderByDefault)
{
    Desktop desktop;
    desktop.environment.remove(QStringLiteral("XDG_DATA_HOME"));
    EXPECT_EQ(desktop.handler().install(), std::error_code{});
    EXPECT_TRUE(fs::exists(desktop / "home" / ".local" / "share" / "applications" / entryFile));
    desktop.environment.remove(QStringLiteral("HOME"));
    EXPECT_EQ(desktop.handler().install(), std::errc::no_such_file_or_directory);
}

TEST(SchemeHandler, WritesTheEntryOnlyWhenItHasChanged)
{
    Desktop desktop;
    ASSERT_EQ(desktop.handler().install(), std::error_code{});
    FailingFileSystem watched{desktop.files};
    SchemeHandler again(watched, desktop.program, desktop.environment);
    EXPECT_EQ(again.install(), std::error_code{});
    EXPECT_THAT(watched.seen(), testing::ElementsAre(FailingFileSystem::Operation::read));

    EXPECT_EQ(desktop.handlerOf("/opt/new/brisken-roost").install(), std::error_code{});
    EXPECT_THAT(bytesOf(desktop.applications / entryFile), HasSubstr("\nExec=/opt/new/brisken-roost %u\n"));
}

TEST(SchemeHandler, KeepsTheOldEntryWhenTheNewOneCannotBeWritten)
{
    Desktop desktop;
    ASSERT_EQ(desktop.handler().install(), std::error_code{});
    const std::string before = bytesOf(desktop.applications / entryFile);
    FailingFileSystem full{desktop.files};
    full.failEvery(FailingFileSystem::Operation::write, std::make_error_code(std::errc::no_space_on_device));
    EXPECT_EQ(SchemeHandler(full, "/opt/new", desktop.environment).install(), std::errc::no_space_on_device);
    EXPECT_EQ(bytesOf(desktop.applications / entryFile), before);
}

TEST(SchemeHandler, RefusesAProgramThatNoEntryCanName)
{
    Desktop desktop;
    EXPECT_EQ(desktop.handlerOf("/a=b").install(), std::errc::invalid_argument);
}

TEST(SchemeHandler, TakesTheScheme)
{
    Desktop desktop;
    EXPECT_EQ(desktop.claim(), ours);
    EXPECT_THAT(bytesOf(desktop / "config" / "mimeapps.list"),
                HasSubstr("x-scheme-handler/briskenroost=" + entryFile));
    EXPECT_EQ(desktop.claim(), ours) << "again and again";
}

TEST(SchemeHandler, TakesTheSchemeFromTheOneThatIsFirstByItsName)
{
    Desktop desktop;
    desktop.addRival("a-rival.desktop", desktop.applications);
    EXPECT_EQ(desktop.whoIs(), (Handler{Kind::another, QStringLiteral("a-rival.desktop")}));
    EXPECT_EQ(desktop.claim(), ours);
}

TEST(SchemeHandler, StaysTheHandlerWhenARivalComesLater)
{
    Desktop desktop;
    ASSERT_EQ(desktop.claim(), ours);
    desktop.addRival("a-rival.desktop", desktop.applications);
    EXPECT_EQ(desktop.whoIs(), ours);
}

TEST(SchemeHandler, TakesTheSchemeFromTheOneThatWasChosenBefore)
{
    Desktop desktop;
    desktop.addRival("rival.desktop", desktop / "system" / "applications");
    putBytes(
        desktop / "config" / "mimeapps.list",
        "[Default Applications]\nx-scheme-handler/briskenroost=rival.desktop\ntext/plain=editor.desktop\n");
    EXPECT_EQ(desktop.whoIs(), (Handler{Kind::another, QStringLiteral("rival.desktop")}));
    EXPECT_EQ(desktop.claim(), ours);
    EXPECT_THAT(bytesOf(desktop / "config" / "mimeapps.list"), HasSubstr("text/plain=editor.desktop"))
        << "other choices stay";
}

TEST(SchemeHandler, SaysThatADesktopPrefersAnother)
{
    Desktop desktop;
    desktop.addRival("rival.desktop", desktop / "system" / "applications");
    desktop.set("XDG_CURRENT_DESKTOP", "Roostbox");
    putBytes(desktop / "config" / "roostbox-mimeapps.list",
             "[Default Applications]\nx-scheme-handler/briskenroost=rival.desktop\n");
    EXPECT_EQ(desktop.claim(), (Handler{Kind::another, QStringLiteral("rival.desktop")}));
}

TEST(SchemeHandler, StartsTheProgramWithTheWholeAddress)
{
    Desktop desktop;
    ASSERT_EQ(desktop.claim(), ours);
    const std::string callback = "briskenroost://callback?code=a%20b&state=$(id)`id`;'\"*&iss=https://x/~";
    QProcess opener;
    opener.setProcessEnvironment(desktop.environment);
    opener.start(QStringLiteral("/usr/bin/xdg-open"), {QString::fromStdString(callback)});
    ASSERT_TRUE(opener.waitForFinished());
    EXPECT_EQ(opener.exitCode(), 0);
    EXPECT_TRUE(pollUntil([&] { return fs::exists(desktop.arguments); }));
    EXPECT_EQ(bytesOf(desktop.arguments), callback + "\n");
}

TEST(SchemeHandler, DoesNotTrustAnOpenerThatTakesQuotesForPartOfAName)
{
    Desktop desktop;
    const fs::path program = desktop.script("with a blank/brisken-roost", "true");
    EXPECT_EQ(await(desktop.handlerOf(program).claim({})),
              (Handler{Kind::unknown, SchemeHandler::entryName}));
}

TEST(SchemeHandler, DoesNotKnowWithoutTheToolsOfTheDesktop)
{
    Desktop desktop;
    const LogCatcher log;
    desktop.set("PATH", (desktop / "bin").string());
    EXPECT_EQ(desktop.claim(), Handler{});
    desktop.set("PATH", "");
    EXPECT_EQ(desktop.claim(), Handler{});
    EXPECT_THAT(log.lines(), testing::IsEmpty());
}

TEST(SchemeHandler, DoesNotWaitForAToolThatHangs)
{
    Desktop desktop;
    desktop.script("xdg-mime", "exec sleep 100");
    SchemeHandler handler(desktop.files, desktop.program, desktop.environment, 50ms);
    EXPECT_EQ(await(handler.claim({})), Handler{});
}

TEST(SchemeHandler, IsDoneSoonAfterAStop)
{
    Desktop desktop;
    desktop.script("xdg-mime", "exec sleep 100");
    std::stop_source stop;
    SchemeHandler handler = desktop.handler();
    Pending claiming(handler.claim(stop.get_token()));
    EXPECT_FALSE(claiming.isDone());
    stop.request_stop();
    EXPECT_EQ(claiming.get(20s), Handler{});
}

TEST(SchemeHandler, LeavesTheUsersChoiceUntouchedWhenItIsOursAlready)
{
    Desktop desktop;
    ASSERT_EQ(desktop.claim(), ours);
    const fs::path choices = desktop / "config" / "mimeapps.list";
    const fs::path elsewhere = desktop / "home" / "choices";
    fs::rename(choices, elsewhere);
    fs::create_symlink(elsewhere, choices);
    EXPECT_EQ(desktop.claim(), ours);
    EXPECT_TRUE(fs::is_symlink(choices));
}

TEST(SchemeHandler, DoesNotTrustAnOlderEntryThatItCannotReplace)
{
    Desktop desktop;
    ASSERT_EQ(desktop.claim(), ours);
    const LogCatcher log;
    FailingFileSystem full{desktop.files};
    full.failEvery(FailingFileSystem::Operation::write, std::make_error_code(std::errc::no_space_on_device));
    SchemeHandler moved(full, "/opt/new/brisken-roost", desktop.environment, guardTime);
    EXPECT_EQ(await(moved.claim({})), Handler{}) << "the older one starts another program";
    EXPECT_EQ(log.messages(RoostLog::auth().categoryName()).size(), 1);
}

TEST(SchemeHandler, GoesOnWhenTheEntryCannotBeInstalled)
{
    Desktop desktop;
    const LogCatcher log;
    putBytes(desktop.applications, "a file in the place of the folder");
    EXPECT_NE(desktop.claim().kind, Kind::ours);
    EXPECT_EQ(log.messages(RoostLog::auth().categoryName()).size(), 1);
}

} // namespace
} // namespace roost::test
