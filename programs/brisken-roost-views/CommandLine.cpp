#include "programs/brisken-roost-views/CommandLine.h"

#include "programs/brisken-roost-views/Surfaces.h"
#include "programs/common/CommandOptions.h"

#include <algorithm>

namespace roost::drawing {

namespace {

constexpr int largestSize = 4096;
constexpr double largestScale = 4;

const QString helpText = QStringLiteral(R"(Usage: brisken-roost-views COMMAND [OPTION ...]

Draws what Brisken Roost shows.

Commands:
  render   draw one surface into a PNG file; needs no display
             --surface mark       the sign of a network
             --platform NAME      of this one, as Roost names it
             --label TEXT         its name for readers; a network without a sign
                                  gets a badge with the first letter of it
             --size N             so many units wide and high, 1 to 4096
             --scale S            so many pixels to a unit, 1 (default) to 4
             --color #rrggbb      in this colour (default: #000000)
             --background COLOR   on this one, #rrggbb or none (default)
             --output FILE        into this file; - is standard output

Options:
  --help        print this text
  --version     print the version

Exit codes: 0 fine, 1 failure, 2 wrong usage. More: man brisken-roost-views
)");

const QStringList renderOptions{QStringLiteral("surface"),    QStringLiteral("platform"),
                                QStringLiteral("label"),      QStringLiteral("size"),
                                QStringLiteral("scale"),      QStringLiteral("color"),
                                QStringLiteral("background"), QStringLiteral("output")};

/// Takes the values of options out of the words, and keeps the first complaint about them.
class Values {
public:
    explicit Values(const QCommandLineParser& parser) : parser_{parser} {}

    const std::optional<QString>& complaint() const { return complaint_; }

    std::optional<QString> value(const QString& option) const { return valueOf(parser_, option); }

    QString needed(const QString& option, const QString& question)
    {
        const QString text = value(option).value_or(QString{});
        if (text.isEmpty()) {
            complain(question);
        }
        return text;
    }

    /// "#rrggbb".
    QColor color(const QString& option, const QColor& otherwise)
    {
        const auto text = value(option);
        if (!text) {
            return otherwise;
        }
        constexpr qsizetype length = 7;
        QColor color;
        if (text->size() == length && text->startsWith(QLatin1Char('#'))) {
            color.setNamedColor(*text);
        }
        if (!color.isValid()) {
            complain(QStringLiteral("--%1 needs a colour as #rrggbb, not \"%2\".").arg(option, *text));
        }
        return color;
    }

    void complain(const QString& sentence)
    {
        if (!complaint_) {
            complaint_ = sentence;
        }
    }

private:
    const QCommandLineParser& parser_;
    std::optional<QString> complaint_;
};

std::string namesOfSurfaces()
{
    std::string names;
    for (const Surface& surface : surfaces()) {
        names.append(names.empty() ? "" : ", ").append(surface.name);
    }
    return names;
}

std::string surfaceFrom(Values& values)
{
    const QString names = QString::fromStdString(namesOfSurfaces());
    const QString name =
        values.needed(QStringLiteral("surface"),
                      QStringLiteral("Which surface? --surface takes one of these: %1.").arg(names));
    if (!name.isEmpty() && surfaceNamed(name.toStdString()) == nullptr) {
        values.complain(QStringLiteral("There is no surface \"%1\". There are: %2.").arg(name, names));
    }
    return name.toStdString();
}

int sizeFrom(Values& values)
{
    const QString text =
        values.needed(QStringLiteral("size"), QStringLiteral("How large? --size takes a number of units."));
    bool isNumber = false;
    const int size = text.toInt(&isNumber);
    if (!isNumber || size < 1 || size > largestSize) {
        values.complain(QStringLiteral("--size needs a whole number from 1 to %1, not \"%2\".")
                            .arg(QString::number(largestSize), text));
    }
    return size;
}

double scaleFrom(Values& values)
{
    const auto text = values.value(QStringLiteral("scale"));
    if (!text) {
        return 1;
    }
    bool isNumber = false;
    const double scale = text->toDouble(&isNumber);
    // Written so that what is no number at all is refused too.
    if (!isNumber || !(scale >= 1 && scale <= largestScale)) {
        values.complain(QStringLiteral("--scale needs a number from 1 to %1, not \"%2\".")
                            .arg(QString::number(largestScale), *text));
    }
    return scale;
}

std::expected<Command, QString> renderFrom(const QCommandLineParser& parser)
{
    Values values{parser};
    RenderCommand command;
    command.surface = surfaceFrom(values);
    command.platform =
        values.needed(QStringLiteral("platform"), QStringLiteral("Which network? --platform takes its name."))
            .toStdString();
    if (const auto label = values.value(QStringLiteral("label"))) {
        command.label = label->toStdString();
    }
    command.size = sizeFrom(values);
    command.scale = scaleFrom(values);
    command.color = values.color(QStringLiteral("color"), command.color);
    const QString background = QStringLiteral("background");
    if (values.value(background) != QStringLiteral("none")) {
        command.background = values.color(background, command.background);
    }
    command.output =
        values.needed(QStringLiteral("output"),
                      QStringLiteral("Where to? --output takes a file, or - for standard output."));
    if (values.complaint()) {
        return std::unexpected(*values.complaint());
    }
    return command;
}

} // namespace

std::expected<Command, QString> parseCommandLine(const QStringList& words, const QString& version)
{
    const auto unusable = [](const QString& what) {
        return std::unexpected(what + QStringLiteral(" Try brisken-roost-views --help."));
    };
    QCommandLineParser parser;
    addOptions(parser, renderOptions);
    // The parser takes the first argument for the name of the program.
    if (!parser.parse(QStringList{QString{}} + words)) {
        return unusable(parser.errorText());
    }
    if (parser.isSet(QStringLiteral("help"))) {
        return PrintCommand{helpText};
    }
    if (parser.isSet(QStringLiteral("version"))) {
        return PrintCommand{QStringLiteral("brisken-roost-views %1\n").arg(version)};
    }
    const QStringList positional = parser.positionalArguments();
    if (positional.isEmpty()) {
        return unusable(QStringLiteral("A command is missing."));
    }
    if (positional.first() != QLatin1String("render")) {
        return unusable(QStringLiteral("There is no command \"%1\".").arg(positional.first()));
    }
    if (positional.size() > 1) {
        return unusable(QStringLiteral("\"%1\" is one argument too many.").arg(positional.at(1)));
    }
    auto command = renderFrom(parser);
    if (!command) {
        return unusable(command.error());
    }
    return *std::move(command);
}

} // namespace roost::drawing
