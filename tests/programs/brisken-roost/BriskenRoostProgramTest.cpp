#include "model/RealFileSystem.h"
#include "model/WidgetStore.h"
#include "tests/programs/brisken-roost/Records.h"
#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unicode/utypes.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <array>

namespace roost {
namespace {

using namespace std::chrono_literals;
using test::fileOf;
using test::recordOf;
using testing::HasSubstr;
using testing::StartsWith;

struct Finished {
    int code = -1;
    std::string output;
    std::string error;
};

/// A folder of ICU's that shadows its built-in data and notices who looks for some. What lies there is no
/// data, so that nothing changes for who does.
class IcuWatch {
public:
    explicit IcuWatch(const QString& folder) : notices_{::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)}
    {
        const QString data = folder + QStringLiteral("/" U_ICUDATA_NAME);
        EXPECT_TRUE(QDir{}.mkpath(data));
        // Every locale leads to the root, every choice among locales to what is known about languages.
        for (const char* name : {"root", "langInfo", "likelySubtags", "metadata", "supplementalData"}) {
            QFile file{data + u'/' + QString::fromLatin1(name) + QStringLiteral(".res")};
            EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write("no data") > 0);
        }
        EXPECT_GE(::inotify_add_watch(notices_, data.toUtf8().constData(), IN_OPEN), 0);
    }
    IcuWatch(const IcuWatch&) = delete;
    IcuWatch& operator=(const IcuWatch&) = delete;
    ~IcuWatch() { ::close(notices_); }

    /// Whether anybody has looked since the last time.
    bool noticed()
    {
        std::array<char, 4096> events{};
        bool any = false;
        while (::read(notices_, events.data(), events.size()) > 0) {
            any = true;
        }
        return any;
    }

private:
    int notices_;
};

/// Runs the program with a data folder of its own and neither a display nor a session bus.
class BriskenRoostProgram : public testing::Test {
protected:
    Finished run(const QStringList& arguments, const QByteArray& input = {})
    {
        QProcess process;
        process.setProcessEnvironment(environment_);
        process.start(QStringLiteral(BRISKEN_ROOST), arguments);
        process.write(input);
        process.closeWriteChannel();
        EXPECT_TRUE(process.waitForFinished(20'000));
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                process.readAllStandardOutput().toStdString(), process.readAllStandardError().toStdString()};
    }

    void SetUp() override
    {
        environment_.insert(QStringLiteral("HOME"), folder_.path());
        environment_.insert(QStringLiteral("XDG_DATA_HOME"), folder_.path());
    }

    WidgetStore store()
    {
        return {files_, folder_.filePath(QStringLiteral("QK27XRWN5P.world.brisken.roost")).toStdString()};
    }

    QProcessEnvironment environment_;
    QTemporaryDir folder_;
    RealFileSystem files_;
};

TEST_F(BriskenRoostProgram, PrintsItsHelpAndVersion)
{
    EXPECT_THAT(run({QStringLiteral("--help")}).output, StartsWith("Usage: brisken-roost"));
    EXPECT_EQ(run({QStringLiteral("--help")}).code, 0);
    EXPECT_THAT(run({QStringLiteral("--version")}).output, testing::MatchesRegex("brisken-roost [0-9.]+\n"));
}

TEST_F(BriskenRoostProgram, TellsWrongUsageOnStandardErrorAlone)
{
    const Finished finished = run({QStringLiteral("dance")});
    EXPECT_EQ(finished.code, 2);
    EXPECT_EQ(finished.output, "");
    EXPECT_EQ(finished.error, "brisken-roost: There is no command \"dance\". Try brisken-roost --help.\n");
}

TEST_F(BriskenRoostProgram, ShowsTheSharedFile)
{
    RoostAccountRecord record = recordOf("a", 48213, 0s);
    record.fetchedAt = std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
    ASSERT_TRUE(store().write(fileOf({record})));
    const Finished finished = run({QStringLiteral("status")});
    EXPECT_EQ(finished.code, 0);
    EXPECT_THAT(finished.output, HasSubstr("48,213"));
    EXPECT_THAT(finished.output, testing::Not(HasSubstr("\033"))) << "no terminal, no colour";
}

TEST_F(BriskenRoostProgram, HasExitCodesForNothingAndForStaleNumbers)
{
    EXPECT_EQ(run({QStringLiteral("status")}).code, 3);
    ASSERT_TRUE(store().write(fileOf({recordOf("a", 1, 0s)})));
    EXPECT_EQ(run({QStringLiteral("status")}).code, 4);
    EXPECT_EQ(run({QStringLiteral("status"), QStringLiteral("--format"), QStringLiteral("waybar")}).code, 0);
}

TEST_F(BriskenRoostProgram, FailsWhenItsOutputCannotBeWritten)
{
    QProcess process;
    process.setProcessEnvironment(environment_);
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start(QStringLiteral(BRISKEN_ROOST), {QStringLiteral("--help")});
    ASSERT_TRUE(process.waitForFinished(20'000));
    EXPECT_EQ(process.exitCode(), 1);
}

TEST_F(BriskenRoostProgram, ReadsTheInformationFileThatItIsGiven)
{
    const QString path = folder_.filePath(QStringLiteral("info.json"));
    QFile file{path};
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"RoostAppGroup": "another.group"})");
    file.close();
    WidgetStore other{files_, folder_.filePath(QStringLiteral("another.group")).toStdString()};
    ASSERT_TRUE(other.write(fileOf({recordOf("a", 77, 0s)})));
    EXPECT_THAT(run({QStringLiteral("--info"), path, QStringLiteral("status")}).output, HasSubstr("77"));

    const Finished missing =
        run({QStringLiteral("--info"), QStringLiteral("/nowhere.json"), QStringLiteral("status")});
    EXPECT_EQ(missing.code, 2);
    EXPECT_THAT(missing.error, HasSubstr("/nowhere.json"));
}

TEST_F(BriskenRoostProgram, DoesNotRunAtAnIntervalThatIsNone)
{
    const QString path = folder_.filePath(QStringLiteral("info.json"));
    test::putBytes(path.toStdString(), R"({"RoostRefreshInterval": 0})");
    const Finished finished =
        run({QStringLiteral("--info"), path, QStringLiteral("run"), QStringLiteral("--headless")});
    EXPECT_EQ(finished.code, 2);
    EXPECT_EQ(finished.error, "brisken-roost: RoostRefreshInterval must be a whole number from 1 to 300.\n");
}

TEST_F(BriskenRoostProgram, LoadsNothingOfIcuUnlessItWritesNumbers)
{
    environment_.insert(QStringLiteral("ICU_DATA"), folder_.filePath(QStringLiteral("icu")));
    IcuWatch icu{folder_.filePath(QStringLiteral("icu"))};
    ASSERT_TRUE(store().write(fileOf({recordOf("a", 48213, 0s)})));
    const QStringList base{QStringLiteral("--base-url"), QStringLiteral("http://127.0.0.1:9")};
    for (const QStringList& arguments :
         {QStringList{QStringLiteral("--help")},
          {QStringLiteral("--version")},
          {QStringLiteral("dance")},
          {QStringLiteral("status"), QStringLiteral("--format"), QStringLiteral("json")},
          {QStringLiteral("status"), QStringLiteral("--profile"), QStringLiteral("nobody")},
          QStringList{QStringLiteral("sign-in")} + base,
          QStringList{QStringLiteral("accounts")} + base,
          QStringList{QStringLiteral("sync")} + base,
          QStringList{QStringLiteral("sign-out"), QStringLiteral("a")} + base,
          QStringList{QStringLiteral("fetch")} + base,
          {QStringLiteral("briskenroost://oauth/callback?code=a&state=b")}}) {
        static_cast<void>(run(arguments, "token\n"));
        EXPECT_FALSE(icu.noticed()) << arguments.join(u' ').toStdString();
    }
    ASSERT_TRUE(store().write(fileOf({recordOf("a", 48213, 0s)}))) << "signed out above";
    EXPECT_THAT(run({QStringLiteral("status")}).output, HasSubstr("48,213"));
    EXPECT_TRUE(icu.noticed());
}

TEST_F(BriskenRoostProgram, WritesAsTheEnvironmentOrTheOptionSays)
{
    ASSERT_TRUE(store().write(fileOf({recordOf("a", 48213, 0s)})));
    environment_.insert(QStringLiteral("LANG"), QStringLiteral("de_DE.UTF-8"));
    EXPECT_THAT(run({QStringLiteral("status")}).output, HasSubstr("Aufrufe: 48.213"));
    const Finished french =
        run({QStringLiteral("status"), QStringLiteral("--locale"), QStringLiteral("fr-CH")});
    EXPECT_THAT(french.output, HasSubstr("48\u202f213"));
    const Finished unknown = run({QStringLiteral("status"), QStringLiteral("--locale=xx")});
    EXPECT_EQ(unknown.code, 2);
    EXPECT_EQ(unknown.output, "");
    EXPECT_EQ(unknown.error, "brisken-roost: There is no locale \"xx\": de, pt-BR and zh-Hans are ones. Try "
                             "brisken-roost --help.\n");
}

TEST_F(BriskenRoostProgram, FetchNeedsATokenAndRepeatsNone)
{
    const QStringList fetch{QStringLiteral("fetch"), QStringLiteral("--base-url"),
                            QStringLiteral("http://127.0.0.1:9/")};
    EXPECT_EQ(run(fetch).code, 2);
    const Finished broken = run(fetch, "canary token\n");
    EXPECT_EQ(broken.code, 2);
    EXPECT_THAT(broken.error, testing::Not(HasSubstr("canary")));
    const Finished unreachable = run(fetch, "canary\n");
    EXPECT_EQ(unreachable.code, 1);
    EXPECT_THAT(unreachable.error,
                testing::AllOf(testing::Not(HasSubstr("canary")), HasSubstr("snapshot request failed: -1004"),
                               HasSubstr("could not be reached")));
}

TEST_F(BriskenRoostProgram, FetchSendsNoTokenOverAnOpenConnectionToAnotherMachine)
{
    for (const char* base : {"http://roost.example", "ftp://roost.example", "https://", "nonsense"}) {
        const Finished refused =
            run({QStringLiteral("fetch"), QStringLiteral("--base-url"), QString::fromUtf8(base)}, "token\n");
        EXPECT_EQ(refused.code, 2) << base;
    }
}

TEST_F(BriskenRoostProgram, SendsNobodyToAnotherServiceOverAnOpenConnection)
{
    const QString base = QStringLiteral("http://roost.example");
    for (const QStringList& words : {QStringList{QStringLiteral("sign-in")},
                                     {QStringLiteral("accounts")},
                                     {QStringLiteral("sync")},
                                     {QStringLiteral("sign-out"), QStringLiteral("a")}}) {
        const Finished refused = run(words + QStringList{QStringLiteral("--base-url"), base});
        EXPECT_EQ(refused.code, 2) << words.first().toStdString();
        EXPECT_EQ(refused.output, "");
        EXPECT_EQ(refused.error,
                  "brisken-roost: The base URL is neither https nor a service on this machine.\n");
    }
}

TEST_F(BriskenRoostProgram, SaysThatThereIsNoKeyring)
{
    for (const char* command : {"sign-in", "accounts", "sync"}) {
        const Finished finished = run({QString::fromLatin1(command), QStringLiteral("--base-url"),
                                       QStringLiteral("http://127.0.0.1:9")});
        EXPECT_EQ(finished.code, 1) << command;
        EXPECT_EQ(finished.output, "") << command;
        EXPECT_EQ(finished.error,
                  "brisken-roost: There is no keyring to keep the sign-in in. Install one that "
                  "offers the Secret Service, for example gnome-keyring, KWallet or KeePassXC, "
                  "and try again.\n");
    }
}

TEST_F(BriskenRoostProgram, TakesACallbackThatNobodyWaitsForWithOneLogLine)
{
    environment_.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder_.path());
    const Finished finished = run({QStringLiteral("briskenroost://oauth/callback?code=canary&state=canary")});
    EXPECT_EQ(finished.code, 0);
    EXPECT_EQ(finished.output, "");
    EXPECT_THAT(finished.error,
                testing::AllOf(HasSubstr("no sign-in is waiting"), testing::Not(HasSubstr("canary"))));
}

} // namespace
} // namespace roost
