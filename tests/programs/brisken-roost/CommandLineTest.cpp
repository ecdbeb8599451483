#include "programs/brisken-roost/CommandLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace roost {
namespace {

using testing::HasSubstr;

std::expected<CommandLine, QString> parse(std::initializer_list<const char*> words)
{
    QStringList arguments;
    for (const char* word : words) {
        arguments.append(QString::fromUtf8(word));
    }
    return parseCommandLine(arguments, QStringLiteral("1.2.3"));
}

std::string errorOf(std::initializer_list<const char*> words)
{
    const auto line = parse(words);
    return line ? "no error" : line.error().toStdString();
}

std::string printedBy(std::initializer_list<const char*> words)
{
    const auto line = parse(words);
    const auto* print = line ? std::get_if<PrintCommand>(&line->command) : nullptr;
    return print != nullptr ? print->text.toStdString() : "nothing";
}

TEST(CommandLine, TakesStatusWithItsDefaults)
{
    EXPECT_EQ(parse({"status"})->command, Command{StatusCommand{}});
}

TEST(CommandLine, TakesTheOptionsOfStatus)
{
    EXPECT_EQ(parse({"status", "--profile", "p|1", "--format", "json"})->command,
              (Command{StatusCommand{"p|1", StatusFormat::json}}));
    EXPECT_EQ(parse({"status", "--format=waybar"})->command,
              (Command{StatusCommand{std::nullopt, StatusFormat::waybar}}));
    EXPECT_EQ(parse({"status", "--format=text"})->command,
              (Command{StatusCommand{std::nullopt, StatusFormat::text}}));
}

TEST(CommandLine, TakesTheCommandsOfTheRunningApp)
{
    EXPECT_EQ(parse({"run"})->command, Command{RunCommand{}});
    EXPECT_EQ(parse({"run", "--headless", "--base-url", "u"})->command,
              (Command{RunCommand{QStringLiteral("u")}}));
    EXPECT_EQ(parse({"refresh"})->command, Command{RefreshCommand{}});
    EXPECT_EQ(parse({"refresh", "--wait", "--base-url", "u"})->command,
              (Command{RefreshCommand{QStringLiteral("u"), true}}));
    EXPECT_EQ(parse({"select", "p"})->command, (Command{SelectCommand{std::nullopt, "p"}}));
    EXPECT_EQ(parse({"quit"})->command, Command{QuitCommand{}});
    EXPECT_EQ(parse({"sign-in", "--cancel"})->command, (Command{SignInCommand{std::nullopt, true}}));
    EXPECT_EQ(errorOf({"select"}),
              "Which profile? \"brisken-roost accounts\" lists their ids. Try brisken-roost --help.");
    EXPECT_EQ(errorOf({"refresh", "p"}), "\"p\" is one argument too many. Try brisken-roost --help.");
    EXPECT_EQ(errorOf({"quit", "--wait"}), "Unknown option 'wait'. Try brisken-roost --help.");
}

TEST(CommandLine, TakesLocalesThatAreOnes)
{
    for (const char* locale : {"de", "pt-BR", "pt_BR", "zh-Hans", "iw", "ca", "ar-EG-u-nu-latn",
                               "ar_EG@numbers=latn", "de_AT.UTF-8"}) {
        EXPECT_EQ(parse({"status", "--locale", locale})->command, (Command{StatusCommand{.locale = locale}}));
    }
}

TEST(CommandLine, RefusesLocalesThatNobodyKnows)
{
    EXPECT_EQ(errorOf({"status", "--locale", "xx"}),
              "There is no locale \"xx\": de, pt-BR and zh-Hans are ones. Try brisken-roost --help.");
    for (const char* locale : {"", "english", "und", "e", "-", "999", "tlh", "a b c", "../de", "\xff"}) {
        EXPECT_THAT(errorOf({"status", std::string{"--locale="}.append(locale).c_str()}),
                    HasSubstr("There is no locale"))
            << locale;
    }
    EXPECT_THAT(errorOf({"sync", "--locale", "de"}), HasSubstr("locale"));
}

TEST(CommandLine, TakesTheOptionsOfFetch)
{
    EXPECT_EQ(parse({"fetch", "--base-url", "http://127.0.0.1:1", "--profile", "a"})->command,
              (Command{FetchCommand{QStringLiteral("http://127.0.0.1:1"), "a"}}));
}

TEST(CommandLine, TakesTheOptionsOfNotify)
{
    EXPECT_EQ(parse({"notify", "--test", "newBest"})->command, Command{NotifyCommand{"newBest"}});
    EXPECT_EQ(parse({"notify", "--wait", "--locale", "pt-BR", "--test=all"})->command,
              (Command{NotifyCommand{"all", "pt-BR", true}}));
    EXPECT_EQ(parse({"--wait", "notify", "--test=all"})->command,
              (Command{NotifyCommand{"all", std::nullopt, true}}));
}

TEST(CommandLine, AsksWhichNotificationToTest)
{
    const std::string kinds =
        "milestone, newBest, postWentOut, postFailed, postFailedUnknown, newFollowers and "
        "all are known. Try brisken-roost --help.";
    EXPECT_EQ(errorOf({"notify"}), "Which notification? With --test, " + kinds);
    EXPECT_EQ(errorOf({"notify", "--test", "newbest"}),
              "There is no kind of notification \"newbest\": " + kinds);
    EXPECT_THAT(errorOf({"notify", "newBest"}), HasSubstr("\"newBest\" is one argument too many."));
    EXPECT_THAT(errorOf({"notify", "--test", "all", "--wait=x"}), HasSubstr("wait"));
    EXPECT_THAT(errorOf({"status", "--wait"}), HasSubstr("wait"));
}

TEST(CommandLine, TakesTheCommandsAboutProfiles)
{
    const auto base = QStringLiteral("http://localhost:1");
    EXPECT_EQ(parse({"sign-in"})->command, Command{SignInCommand{}});
    EXPECT_EQ(parse({"sign-in", "--base-url", "http://localhost:1"})->command, Command{SignInCommand{base}});
    EXPECT_EQ(parse({"accounts"})->command, Command{AccountsCommand{}});
    EXPECT_EQ(parse({"accounts", "--base-url", "http://localhost:1"})->command,
              Command{AccountsCommand{base}});
    EXPECT_EQ(parse({"sign-out", "p|1"})->command, (Command{SignOutCommand{std::nullopt, "p|1"}}));
    EXPECT_EQ(parse({"sign-out", "--base-url=http://localhost:1", "a"})->command,
              (Command{SignOutCommand{base, "a"}}));
    EXPECT_EQ(parse({"sync"})->command, Command{SyncCommand{}});
    EXPECT_EQ(parse({"sync", "a", "--base-url=http://localhost:1"})->command,
              (Command{SyncCommand{base, "a"}}));
}

TEST(CommandLine, AsksWhichProfileToSignOut)
{
    EXPECT_THAT(errorOf({"sign-out"}), HasSubstr("Which profile?"));
}

TEST(CommandLine, TakesNoMoreWordsThanACommandHasUseFor)
{
    EXPECT_THAT(errorOf({"sign-in", "a"}), HasSubstr("\"a\" is one argument too many."));
    EXPECT_THAT(errorOf({"accounts", "a"}), HasSubstr("\"a\" is one argument too many."));
    EXPECT_THAT(errorOf({"sign-out", "a", "b"}), HasSubstr("\"b\" is one argument too many."));
    EXPECT_THAT(errorOf({"sync", "a", "b"}), HasSubstr("\"b\" is one argument too many."));
    EXPECT_THAT(errorOf({"sync", "--profile", "a"}), HasSubstr("profile"));
}

TEST(CommandLine, TakesTheInformationFileBeforeAndAfterTheCommand)
{
    EXPECT_EQ(parse({"--info", "a.json", "status"})->infoFile, QStringLiteral("a.json"));
    EXPECT_EQ(parse({"status", "--info", "a.json"})->infoFile, QStringLiteral("a.json"));
    EXPECT_EQ(parse({"status"})->infoFile, std::nullopt);
}

TEST(CommandLine, PrintsHelpAndVersionOnRequest)
{
    EXPECT_THAT(printedBy({"--help"}), HasSubstr("Usage: brisken-roost"));
    EXPECT_THAT(printedBy({"status", "--help"}), HasSubstr("Usage: brisken-roost"));
    EXPECT_EQ(printedBy({"--version"}), "brisken-roost 1.2.3\n");
}

TEST(CommandLine, RefusesWhatItDoesNotKnowInOneSentence)
{
    EXPECT_EQ(errorOf({}), "A command is missing. Try brisken-roost --help.");
    EXPECT_EQ(errorOf({"dance"}), "There is no command \"dance\". Try brisken-roost --help.");
    EXPECT_EQ(errorOf({"status", "now"}), "\"now\" is one argument too many. Try brisken-roost --help.");
    EXPECT_EQ(errorOf({"status", "--format", "xml"}),
              "There is no format \"xml\": text, json and waybar are known. Try brisken-roost --help.");
    EXPECT_THAT(errorOf({"status", "--base-url", "x"}), HasSubstr("base-url"));
    EXPECT_THAT(errorOf({"status", "--profile"}), HasSubstr("profile"));
    EXPECT_THAT(errorOf({"--info"}), HasSubstr("info"));
}

TEST(CommandLine, TakesTheAddressOfASignIn)
{
    EXPECT_EQ(parse({"briskenroost://callback?a=b&c=%20"})->command,
              Command{OpenCallbackCommand{"briskenroost://callback?a=b&c=%20"}});
    EXPECT_EQ(parse({"BriskenRoost:x"})->command, Command{OpenCallbackCommand{"BriskenRoost:x"}});
    EXPECT_EQ(parse({"--info", "a.json", "briskenroost:x"})->infoFile, QStringLiteral("a.json"));
    EXPECT_EQ(errorOf({"briskenroosts:x"}),
              "There is no command \"briskenroosts:x\". Try brisken-roost --help.");
}

TEST(CommandLine, DoesNotRepeatTheAddressOfASignIn)
{
    const std::string alone = "An address of a sign-in stands alone. Try brisken-roost --help.";
    EXPECT_EQ(errorOf({"briskenroost:canary", "status"}), alone);
    EXPECT_EQ(errorOf({"status", "briskenroost:canary"}), alone);
    EXPECT_EQ(errorOf({"briskenroost:canary", "briskenroost:canary"}), alone);
}

TEST(CommandLine, TakesAProfileThatIsNamedLikeACommand)
{
    EXPECT_EQ(parse({"status", "--profile", "fetch"})->command,
              (Command{StatusCommand{"fetch", StatusFormat::text}}));
    EXPECT_EQ(parse({"fetch", "--profile", "status"})->command,
              (Command{FetchCommand{std::nullopt, "status"}}));
}

} // namespace
} // namespace roost
