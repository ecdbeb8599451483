#include "platform/IniSettings.h"
#include "present/RoostL10n.h"
#include "programs/brisken-roost/SampleEvents.h"
#include "tests/platform/PollUntil.h"
#include "tests/support/Dunst.h"
#include "tests/support/NotificationServerStandIn.h"

#include <gmock/gmock.h>

#include <QProcess>

#include <csignal>

namespace roost::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

struct Finished {
    int code = -1;
    std::string output;
    std::string error;
};

/// The real program, started with the environment of this process.
class Program {
public:
    explicit Program(const QStringList& arguments)
    {
        process_.start(QStringLiteral(BRISKEN_ROOST), QStringList{QStringLiteral("notify")} + arguments);
    }

    bool isRunning() const { return process_.state() != QProcess::NotRunning; }

    /// Whether it says that on standard error, sooner or later.
    bool says(const std::string& text)
    {
        return runUntil([&] {
            error_ += process_.readAllStandardError().toStdString();
            return error_.contains(text) || !isRunning();
        });
    }

    void signal(int number) { ::kill(static_cast<pid_t>(process_.processId()), number); }

    Finished end()
    {
        EXPECT_TRUE(runUntil([this] { return !isRunning(); }));
        return {process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1,
                process_.readAllStandardOutput().toStdString(),
                error_ + process_.readAllStandardError().toStdString()};
    }

private:
    QProcess process_;
    std::string error_;
};

Finished notify(const char* kind,
                const QStringList& more = {QStringLiteral("--locale"), QStringLiteral("en_US")})
{
    return Program{QStringList{QStringLiteral("--test"), QString::fromLatin1(kind)} + more}.end();
}

/// A desktop with a notification server and a browser that notes what it is to open.
class NotifyCommandTest : public testing::Test {
protected:
    NotifyCommandTest()
    {
        const std::filesystem::path opener = bus.home() / "bin" / "xdg-open";
        std::filesystem::create_directory(opener.parent_path());
        putBytes(
            opener,
            "#!/bin/sh\nprintf '%s\\n' \"$@\" >\"$HOME/opening\"\nmv \"$HOME/opening\" \"$HOME/opened\"\n");
        std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
        path.emplace("PATH",
                     QByteArray::fromStdString(opener.parent_path().string()) + ':' + qgetenv("PATH"));
    }

    std::string opened() const { return bytesOf(bus.home() / "opened"); }

    PrivateBus bus;
    PrivateDisplay display;
    std::optional<ScopedVariable> path;
};

class NotifyCommandOnDunst : public NotifyCommandTest {
protected:
    Dunst dunst{bus, display};
};

/// What each kind shows in American English.
struct Shown {
    const char* kind;
    std::string title;
    std::string body;
    std::string category;
};

const Shown everyKind[] = {
    {"milestone", "A post passed 10K views", "“Shaping 200 rolls before sunrise” · TikTok · Views: 12.5K",
     "milestones"},
    {"newBest", "New best post of the week", "“Shaping 200 rolls before sunrise” · TikTok · Views: 12.5K",
     "bestPost"},
    {"postWentOut", "Post went out", "Cinnamon &amp; cardamom buns are back", "postWentOut"},
    {"postFailed", "A post did not go out", "'“Cinnamon &amp; cardamom buns are back”", "postFailed"},
    {"postFailedUnknown", "A post did not go out", "Open Brisken Roost to see why.", "postFailed"},
    {"newFollowers", "New followers: +112", "Total: 18.3K", "followers"},
};

TEST_F(NotifyCommandOnDunst, ShowsANotificationOfEachKind)
{
    for (const Shown& wanted : everyKind) {
        const Finished finished = notify(wanted.kind);
        EXPECT_EQ(finished.code, 0) << wanted.kind;
        EXPECT_EQ(finished.output, wanted.title + "\n");
        EXPECT_THAT(finished.error, HasSubstr("notification due: " + wanted.category));
        EXPECT_EQ(std::ranges::count(finished.error, '\n'), 1) << finished.error;
        const std::vector<std::string> lines = dunst.shown();
        EXPECT_EQ(saidOf("summary", lines), wanted.title);
        EXPECT_EQ(saidOf("body", lines), wanted.body);
        EXPECT_EQ(saidOf("category", lines), wanted.category);
    }
}

TEST_F(NotifyCommandOnDunst, ShowsAllOfThemOneAfterAnother)
{
    std::string titles;
    for (const Shown& each : everyKind) {
        titles += each.title + "\n";
    }
    const Finished finished = notify("all");
    EXPECT_EQ(finished.code, 0);
    EXPECT_EQ(finished.output, titles);
    std::string shown;
    for (std::size_t i = 0; i < std::size(everyKind); ++i) {
        shown += saidOf("summary", dunst.shown()) + "\n";
    }
    EXPECT_EQ(shown, titles);
}

TEST_F(NotifyCommandOnDunst, SpeaksTheLanguageThatItIsAskedFor)
{
    EXPECT_EQ(notify("newFollowers", {QStringLiteral("--locale=pt-BR")}).output,
              RoostL10n::filled(RoostL10n::bundle("pt-BR").text("New followers: %@"), {"+112"}) + "\n");
    EXPECT_THAT(dunst.shown(), IsSupersetOf({"\"default\": \"Abrir\"", "\"open\": \"Abrir\""}));
    const ScopedVariable german("LC_ALL", "de_DE.UTF-8");
    EXPECT_EQ(notify("postWentOut", {}).output, RoostL10n::bundle("de").text("Post went out") + "\n");
    EXPECT_THAT(dunst.shown(), Contains("\"open\": \"Öffnen\""));
}

TEST_F(NotifyCommandOnDunst, OpensThePageOfAClickAsLongAsItWaits)
{
    Program program{{QStringLiteral("--test"), QStringLiteral("milestone"), QStringLiteral("--wait")}};
    ASSERT_TRUE(program.says("press Ctrl+C to end.\n"));
    ASSERT_TRUE(pollUntil([&] {
        dunst.click();
        return !opened().empty();
    }));
    EXPECT_EQ(opened(), "https://social.example/video/73\n");
    ASSERT_TRUE(program.isRunning());
    program.signal(SIGTERM);
    const Finished finished = program.end();
    EXPECT_EQ(finished.code, 0);
    EXPECT_THAT(finished.output, Not(IsEmpty()));
}

TEST_F(NotifyCommandOnDunst, HearsNoClickOnceItHasEnded)
{
    ASSERT_EQ(notify("milestone").code, 0);
    ASSERT_TRUE(pollUntil([&] {
        dunst.click();
        return dunst.count() == 0;
    }));
    EXPECT_EQ(opened(), "");
}

TEST_F(NotifyCommandOnDunst, SaysThatAPageCannotBeOpenedWithoutABrowser)
{
    std::filesystem::remove(bus.home() / "bin" / "xdg-open");
    const ScopedVariable nowhere("PATH", QByteArray::fromStdString(bus.home().string()));
    Program program{{QStringLiteral("--test"), QStringLiteral("postWentOut"), QStringLiteral("--wait")}};
    ASSERT_TRUE(program.says("press Ctrl+C to end.\n"));
    const ScopedVariable clicking("PATH", "/usr/bin:/bin");
    ASSERT_TRUE(pollUntil([&] {
        dunst.click();
        return dunst.count() == 0;
    }));
    EXPECT_TRUE(program.says("The page could not be opened"));
    program.signal(SIGINT);
    EXPECT_EQ(program.end().code, 0);
}

TEST_F(NotifyCommandOnDunst, EndsBetweenTwoNotificationsWhenItIsStopped)
{
    dunst.freeze();
    Program program{{QStringLiteral("--test"), QStringLiteral("all")}};
    ASSERT_TRUE(program.says("notification due: followers"));
    program.signal(SIGINT);
    ASSERT_TRUE(program.says("brisken-roost: stopping"));
    dunst.thaw();
    const Finished finished = program.end();
    EXPECT_EQ(finished.code, 1);
    EXPECT_EQ(finished.output, "");
    EXPECT_THAT(finished.error, HasSubstr("brisken-roost: Stopped.\n"));
    EXPECT_EQ(dunst.count(), 0U);
}

TEST_F(NotifyCommandOnDunst, LeavesOutWhatIsSwitchedOffAndSaysSo)
{
    IniSettings settings{IniSettings::location()};
    settings.setBoolean("notify.followers", false);
    settings.setBoolean("notify.postFailed", false);
    const Finished followers = notify("newFollowers");
    EXPECT_EQ(followers.code, 6);
    EXPECT_EQ(followers.output, "");
    EXPECT_THAT(followers.error,
                HasSubstr("brisken-roost: Switched off in the settings: notify.followers.\n"));
    const Finished all = notify("all");
    EXPECT_EQ(all.code, 6);
    EXPECT_EQ(std::ranges::count(all.output, '\n'), 3);
    EXPECT_THAT(all.error, HasSubstr("settings: notify.postFailed, notify.followers.\n"));
    EXPECT_EQ(dunst.count(), 3U);
}

TEST_F(NotifyCommandOnDunst, WaitsForNoClickOnNothing)
{
    IniSettings{IniSettings::location()}.setBoolean("notify.bestPost", false);
    EXPECT_EQ(notify("newBest", {QStringLiteral("--wait")}).code, 6);
}

TEST_F(NotifyCommandTest, SaysThatTheServerRefused)
{
    NotificationServerStandIn server{bus.address(), {}};
    server.behave(NotificationServerStandIn::Manner::refuses);
    const Finished finished = notify("milestone");
    EXPECT_EQ(finished.code, 1);
    EXPECT_EQ(finished.output, "");
    EXPECT_THAT(finished.error, HasSubstr("brisken-roost: The notification server did not take every"));
}

TEST_F(NotifyCommandTest, SaysThatThereIsNoServer)
{
    const Finished finished = notify("milestone");
    EXPECT_EQ(finished.code, 5);
    EXPECT_EQ(finished.output, "");
    EXPECT_THAT(finished.error, HasSubstr("notification due: milestones\n"));
    EXPECT_THAT(finished.error, HasSubstr("brisken-roost: No notification server answers"));
}

TEST_F(NotifyCommandTest, SaysThatThereIsNoSessionBus)
{
    bus.end();
    EXPECT_THAT(notify("milestone").error, HasSubstr("brisken-roost: There is no session bus"));
    const ScopedVariable none("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
    const Finished finished = notify("all", {QStringLiteral("--wait")});
    EXPECT_EQ(finished.code, 5);
    EXPECT_THAT(finished.error, HasSubstr("brisken-roost: There is no session bus"));
}

TEST_F(NotifyCommandTest, NamesTheKindsForOneThatIsNone)
{
    const Finished finished = notify("rain");
    EXPECT_EQ(finished.code, 2);
    EXPECT_EQ(finished.error,
              "brisken-roost: There is no kind of notification \"rain\": milestone, newBest, postWentOut, "
              "postFailed, postFailedUnknown, newFollowers and all are known. Try brisken-roost --help.\n");
}

TEST(SampleEvents, AreOneOfEachKind)
{
    const Date now{std::chrono::hours{500'000}};
    std::vector<std::string> keys;
    for (const std::string& kind : SampleEvents::kinds()) {
        const SampleEvents::Sample sample = SampleEvents::of(kind, now);
        EXPECT_EQ(sample.snapshot.generatedAt, now);
        EXPECT_EQ(sample.events.size(), kind == "all" ? 6U : 1U) << kind;
        if (kind != "all") {
            keys.push_back(sample.events.front().key);
        }
    }
    EXPECT_THAT(keys, ElementsAre("sample-rich|milestone:https://social.example/video/73:10000",
                                  "sample-rich|best:https://social.example/video/73",
                                  "sample-rich|sent:rich-0", "sample-rich|failed:rich-0",
                                  "sample-rich|failed-count:1:2027-01-15T08:00:00.000Z",
                                  "sample-rich|followers:18342"));
    EXPECT_THAT(SampleEvents::of("rain", now).events, IsEmpty());
}

} // namespace
} // namespace roost::test
