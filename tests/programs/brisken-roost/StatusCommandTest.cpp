#include "programs/brisken-roost/StatusCommand.h"

#include "model/RealFileSystem.h"
#include "tests/programs/brisken-roost/Records.h"
#include "tests/support/ScopedVariable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTemporaryDir>

namespace roost {
namespace {

using namespace std::chrono_literals;
using test::fileOf;
using test::noon;
using test::recordOf;
using test::signedOut;
using testing::AllOf;
using testing::HasSubstr;

class StatusCommandTest : public testing::Test {
protected:
    CommandResult run(StatusCommand command)
    {
        if (!command.locale) {
            command.locale = "en";
        }
        return runStatus(command, store_, [] { return noon; }, {});
    }

    QTemporaryDir folder_;
    RealFileSystem files_;
    WidgetStore store_{files_, folder_.path().toStdString()};
};

TEST_F(StatusCommandTest, SaysThatThereIsNothingYet)
{
    const CommandResult result = run({});
    EXPECT_EQ(result.code, ExitCode::nothingToShow);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error, "brisken-roost: There are no profiles here yet.\n");
}

TEST_F(StatusCommandTest, ShowsFreshNumbersWithoutAWord)
{
    ASSERT_TRUE(store_.write(fileOf({recordOf("a", 48213, 0s)})));
    const CommandResult result = run({});
    EXPECT_EQ(result.code, ExitCode::fine);
    EXPECT_THAT(result.output, HasSubstr("48,213"));
    EXPECT_EQ(result.error, "");
}

TEST_F(StatusCommandTest, ShowsStaleAndSignedOutNumbersWithOneSentence)
{
    ASSERT_TRUE(store_.write(fileOf({recordOf("a", 1, 1h), signedOut(recordOf("b", 2, 0s))})));
    EXPECT_EQ(run({}).code, ExitCode::stale);
    EXPECT_EQ(run({}).error, "brisken-roost: These numbers are older than 15 minutes.\n");
    EXPECT_EQ(run({"b"}).code, ExitCode::nothingToShow);
    EXPECT_EQ(run({"b"}).error, "brisken-roost: Signed out: these are the last numbers.\n");
    EXPECT_THAT(run({"b"}).output, HasSubstr("Signed out"));
}

TEST_F(StatusCommandTest, ShowsNoOtherProfileThanTheOneAskedFor)
{
    ASSERT_TRUE(store_.write(fileOf({recordOf("a", 1, 0s)})));
    EXPECT_EQ(run({"c"}).code, ExitCode::nothingToShow);
    EXPECT_EQ(run({"c"}).output, "");
    EXPECT_EQ(run({"c"}).error, "brisken-roost: There is no profile \"c\" here.\n");
}

TEST_F(StatusCommandTest, IsAlwaysFineForWaybar)
{
    EXPECT_EQ(run({{}, StatusFormat::waybar}).code, ExitCode::fine);
    EXPECT_EQ(run({{}, StatusFormat::waybar}).error, "");
    ASSERT_TRUE(store_.write(fileOf({signedOut(recordOf("a", 1, 0s))})));
    EXPECT_EQ(run({{}, StatusFormat::waybar}).code, ExitCode::fine);
    EXPECT_THAT(run({{}, StatusFormat::waybar}).output, HasSubstr("\"class\":\"signedOut\""));
}

TEST_F(StatusCommandTest, SpeaksTheLanguageThatItIsAskedFor)
{
    ASSERT_TRUE(store_.write(fileOf({recordOf("a", 1234, 0s)})));
    EXPECT_THAT(run({.locale = "de"}).output, HasSubstr("Aufrufe: 1.234"));
    EXPECT_THAT(run({.format = StatusFormat::waybar, .locale = "ar_EG"}).output,
                AllOf(HasSubstr("١٫٢"), HasSubstr("\"class\":\"fresh\"")));
}

TEST_F(StatusCommandTest, SpeaksTheMachinesLanguageWhenItIsNotAsked)
{
    ASSERT_TRUE(store_.write(fileOf({recordOf("a", 1234, 0s)})));
    const test::ScopedVariable all{"LC_ALL", "fr_FR.UTF-8"};
    EXPECT_THAT(runStatus({}, store_, [] { return noon; }, {}).output, HasSubstr("Vues\u202f: 1\u202f234"));
}

TEST_F(StatusCommandTest, WritesTheSameJsonAndSentencesInEveryLocale)
{
    ASSERT_TRUE(store_.write(fileOf({recordOf("a", 1234, 1h)})));
    for (const char* locale : {"de", "ar_EG", "hi-u-nu-deva"}) {
        EXPECT_EQ(run({.format = StatusFormat::json, .locale = locale}).output,
                  run({.format = StatusFormat::json}).output);
        EXPECT_EQ(run({.locale = locale}).error, "brisken-roost: These numbers are older than 15 minutes.\n");
    }
}

TEST_F(StatusCommandTest, PrintsJsonEvenWhenThereIsNothing)
{
    EXPECT_EQ(run({{}, StatusFormat::json}).output, "{\"accounts\":[],\"state\":\"empty\"}\n");
    EXPECT_EQ(run({{}, StatusFormat::json}).code, ExitCode::nothingToShow);
}

} // namespace
} // namespace roost
