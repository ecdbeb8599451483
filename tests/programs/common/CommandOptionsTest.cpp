#include "programs/common/CommandOptions.h"

#include <gtest/gtest.h>

namespace roost {
namespace {

class CommandOptions : public testing::Test {
protected:
    CommandOptions() { addOptions(parser_, {QStringLiteral("colour")}, {QStringLiteral("loud")}); }

    bool parses(const QStringList& words) { return parser_.parse(QStringList{QString{}} + words); }

    QCommandLineParser parser_;
};

TEST_F(CommandOptions, HaveValuesBesideThemOrAfterASign)
{
    ASSERT_TRUE(parses({QStringLiteral("--colour"), QStringLiteral("red"), QStringLiteral("word")}));
    EXPECT_EQ(valueOf(parser_, QStringLiteral("colour")), QStringLiteral("red"));
    EXPECT_EQ(parser_.positionalArguments(), QStringList{QStringLiteral("word")});
    ASSERT_TRUE(parses({QStringLiteral("--colour=")}));
    EXPECT_EQ(valueOf(parser_, QStringLiteral("colour")), QString{});
}

TEST_F(CommandOptions, HaveNoValueWhenTheyWereNotGiven)
{
    ASSERT_TRUE(parses({}));
    EXPECT_EQ(valueOf(parser_, QStringLiteral("colour")), std::nullopt);
}

TEST_F(CommandOptions, HaveNoValueWhenTheyAreFlags)
{
    ASSERT_TRUE(parses({QStringLiteral("--loud"), QStringLiteral("word")}));
    EXPECT_TRUE(parser_.isSet(QStringLiteral("loud")));
    EXPECT_EQ(parser_.positionalArguments(), QStringList{QStringLiteral("word")});
    EXPECT_FALSE(parses({QStringLiteral("--loud=very")}));
}

TEST_F(CommandOptions, AlwaysHoldHelpAndVersion)
{
    ASSERT_TRUE(parses({QStringLiteral("--help"), QStringLiteral("--version")}));
    EXPECT_TRUE(parser_.isSet(QStringLiteral("help")));
    EXPECT_TRUE(parser_.isSet(QStringLiteral("version")));
}

TEST_F(CommandOptions, AreRefusedInASentenceWhenTheyAreUnknown)
{
    EXPECT_FALSE(parses({QStringLiteral("--size"), QStringLiteral("1")}));
    EXPECT_EQ(parser_.errorText(), QStringLiteral("Unknown option 'size'."));
    EXPECT_FALSE(parses({QStringLiteral("--colour")}));
    EXPECT_TRUE(parser_.errorText().endsWith(QLatin1Char('.')));
}

} // namespace
} // namespace roost
