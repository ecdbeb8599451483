#include "programs/brisken-roost-views/CommandLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace roost::drawing {
namespace {

using testing::HasSubstr;

std::expected<Command, QString> parse(const QString& line)
{
    return parseCommandLine(line.split(QLatin1Char(' '), Qt::SkipEmptyParts), QStringLiteral("1.2.3"));
}

/// The error of a `render` that lacks nothing but what `options` have wrong; later options win.
std::string errorWith(const char* options)
{
    const auto command =
        parse(QStringLiteral("render --surface mark --platform x --size 24 --output a.png ") +
              QString::fromUtf8(options));
    return command ? "no error" : command.error().toStdString();
}

std::string errorOf(const char* line)
{
    const auto command = parse(QString::fromUtf8(line));
    return command ? "no error" : command.error().toStdString();
}

RenderCommand rendered(const char* options)
{
    const auto command =
        parse(QStringLiteral("render --surface mark --platform x --size 24 --output a.png ") +
              QString::fromUtf8(options));
    return std::get<RenderCommand>(command.value());
}

TEST(DrawingCommandLine, TakesRenderWithItsDefaults)
{
    EXPECT_EQ(rendered(""), (RenderCommand{.surface = "mark",
                                           .platform = "x",
                                           .label = std::nullopt,
                                           .size = 24,
                                           .scale = 1,
                                           .color = Qt::black,
                                           .background = Qt::transparent,
                                           .output = QStringLiteral("a.png")}));
}

TEST(DrawingCommandLine, TakesTheOptionsOfRender)
{
    EXPECT_EQ(
        rendered("--label Zeta --size 4096 --scale 1.5 --color #0A84ff --background #ffffff --output -"),
        (RenderCommand{.surface = "mark",
                       .platform = "x",
                       .label = "Zeta",
                       .size = 4096,
                       .scale = 1.5,
                       .color = QColor{0x0a, 0x84, 0xff},
                       .background = Qt::white,
                       .output = QStringLiteral("-")}));
    EXPECT_EQ(rendered("--background none").background, QColor{Qt::transparent});
    EXPECT_EQ(rendered("--size 1 --scale 4").scale, 4);
}

TEST(DrawingCommandLine, AsksForWhatIsMissing)
{
    EXPECT_THAT(errorOf("render --platform x --size 24 --output a.png"), HasSubstr("one of these: mark."));
    EXPECT_THAT(errorOf("render --surface mark --size 24 --output a.png"), HasSubstr("Which network?"));
    EXPECT_THAT(errorOf("render --surface mark --platform x --output a.png"), HasSubstr("How large?"));
    EXPECT_THAT(errorOf("render --surface mark --platform x --size 24"), HasSubstr("Where to?"));
    for (const char* empty : {"--surface=", "--platform=", "--size=", "--output="}) {
        EXPECT_THAT(errorWith(empty), HasSubstr("?")) << empty;
    }
}

TEST(DrawingCommandLine, RefusesASurfaceThatThereIsNot)
{
    EXPECT_EQ(errorWith("--surface moon"),
              "There is no surface \"moon\". There are: mark. Try brisken-roost-views --help.");
}

TEST(DrawingCommandLine, RefusesSizesOutOfTheirRange)
{
    for (const char* size : {"0", "-1", "4097", "99999999999", "24.5", "24px", "1e2", "large"}) {
        EXPECT_EQ(errorWith((std::string{"--size="} + size).c_str()),
                  std::string{"--size needs a whole number from 1 to 4096, not \""} + size +
                      "\". Try brisken-roost-views --help.");
    }
}

TEST(DrawingCommandLine, RefusesScalesOutOfTheirRange)
{
    for (const char* scale : {"0.99", "4.01", "-2", "nan", "inf", "1,5", "2x", ""}) {
        EXPECT_THAT(errorWith((std::string{"--scale="} + scale).c_str()),
                    HasSubstr("--scale needs a number from 1 to 4"))
            << scale;
    }
}

TEST(DrawingCommandLine, RefusesColoursInOtherSpellings)
{
    for (const char* color : {"red", "#fff", "#12345", "#1234567", "#12345g", "123456", "none", ""}) {
        EXPECT_THAT(errorWith((std::string{"--color="} + color).c_str()),
                    HasSubstr("--color needs a colour as #rrggbb"))
            << color;
    }
    EXPECT_THAT(errorWith("--background=black"), HasSubstr("--background needs a colour as #rrggbb"));
}

TEST(DrawingCommandLine, RefusesWhatItDoesNotKnowInOneSentence)
{
    EXPECT_EQ(errorOf(""), "A command is missing. Try brisken-roost-views --help.");
    EXPECT_EQ(errorOf("dance"), "There is no command \"dance\". Try brisken-roost-views --help.");
    EXPECT_EQ(errorWith("more"), "\"more\" is one argument too many. Try brisken-roost-views --help.");
    EXPECT_EQ(errorWith("--wings 2"), "Unknown option 'wings'. Try brisken-roost-views --help.");
    EXPECT_EQ(errorOf("render --size"), "Missing value after '--size'. Try brisken-roost-views --help.");
}

TEST(DrawingCommandLine, PrintsHelpAndVersionOnRequest)
{
    EXPECT_EQ(parse(QStringLiteral("--version")),
              Command{PrintCommand{QStringLiteral("brisken-roost-views 1.2.3\n")}});
    for (const char* line : {"--help", "render --help"}) {
        const auto command = parse(QString::fromUtf8(line));
        EXPECT_TRUE(std::get<PrintCommand>(command.value())
                        .text.startsWith(QStringLiteral("Usage: brisken-roost-views")));
    }
}

} // namespace
} // namespace roost::drawing
