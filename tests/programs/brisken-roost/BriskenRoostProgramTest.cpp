#include "model/RealFileSystem.h"
#include "model/WidgetStore.h"
#include "tests/programs/brisken-roost/Records.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

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
    EXPECT_THAT(finished.output, HasSubstr("48213"));
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
