#include "programs/brisken-roost/CommandLine.h"

#include "present/RoostFormat.h"
#include "programs/brisken-roost/SampleEvents.h"
#include "programs/common/CommandOptions.h"

#include <algorithm>
#include <iterator>

namespace roost {

namespace {

const QString helpText = QStringLiteral(R"(Usage: brisken-roost [--info FILE] COMMAND [OPTION ...]

Your Roost numbers on the desktop. Reads only; publishes nothing.

Commands:
  run      keep the numbers fresh until told to quit
             --headless        without a tray icon and windows
             --base-url URL    at this service, as for all commands down to quit
  sign-in  sign a profile in through the browser
             --cancel          give up the sign-in that the running app waits for
  accounts list the profiles, and who of them is signed in
  select ID
           have this profile shown
  refresh  fetch fresh numbers now
             --wait            end when they have come
  sync [ID]
           the same for one profile or every one, always with --wait
  sign-out ID
           forget a profile here; Roost lists the connection until you end it there
  quit     end the running program
  status   print the last numbers of every profile, without asking the network
             --profile ID      of this profile only
             --format FORMAT   text (default), json or waybar
             --locale ID       in this language and region (pt-BR), not yours
  notify   show a notification with sample numbers, the way real ones come
             --test KIND       milestone, newBest, postWentOut, postFailed,
                               postFailedUnknown, newFollowers or all
             --locale ID       in this language, not yours
             --wait            stay, so that a click opens the page, until Ctrl+C
  fetch    fetch one profile's numbers with a bearer token, for development; the
           token is the first line of standard input, or $BRISKEN_ROOST_TOKEN
             --base-url URL    of this service
             --profile ID      note a failure in this profile's record

Options:
  --info FILE   read the build's information dictionary from FILE
  --help        print this text
  --version     print the version

Exit codes: 0 fine, 1 failure, 2 wrong usage, 3 nothing to show or signed out,
4 shown, but older than 15 minutes, 5 nobody shows notifications, 6 switched off.
More: man brisken-roost
)");

std::expected<StatusFormat, QString> formatFrom(const QString& name)
{
    if (name == QLatin1String("text")) {
        return StatusFormat::text;
    }
    if (name == QLatin1String("json")) {
        return StatusFormat::json;
    }
    if (name == QLatin1String("waybar")) {
        return StatusFormat::waybar;
    }
    return std::unexpected(
        QStringLiteral("There is no format \"%1\": text, json and waybar are known.").arg(name));
}

/// The locale that was asked for; nothing when none was.
std::expected<std::optional<std::string>, QString> localeFrom(const QCommandLineParser& parser)
{
    const auto locale = valueOf(parser, QStringLiteral("locale"));
    if (!locale) {
        return std::nullopt;
    }
    if (!RoostFormat::knows(locale->toStdString())) {
        return std::unexpected(
            QStringLiteral("There is no locale \"%1\": de, pt-BR and zh-Hans are ones.").arg(*locale));
    }
    return locale->toStdString();
}

std::expected<Command, QString> statusFrom(const QCommandLineParser& parser)
{
    StatusCommand command;
    if (const auto profile = valueOf(parser, QStringLiteral("profile"))) {
        command.profile = profile->toStdString();
    }
    if (const auto name = valueOf(parser, QStringLiteral("format"))) {
        const auto format = formatFrom(*name);
        if (!format) {
            return std::unexpected(format.error());
        }
        command.format = *format;
    }
    auto locale = localeFrom(parser);
    if (!locale) {
        return std::unexpected(locale.error());
    }
    command.locale = *std::move(locale);
    return command;
}

std::expected<Command, QString> fetchFrom(const QCommandLineParser& parser)
{
    FetchCommand command;
    command.baseURL = valueOf(parser, QStringLiteral("base-url"));
    if (const auto profile = valueOf(parser, QStringLiteral("profile"))) {
        command.profile = profile->toStdString();
    }
    return command;
}

/// Whether `word` is the address that the desktop entry starts the program with.
bool isCallback(const QString& word)
{
    return word.startsWith(QLatin1String("briskenroost:"), Qt::CaseInsensitive);
}

std::expected<Command, QString> signInFrom(const QCommandLineParser& parser)
{
    return SignInCommand{valueOf(parser, QStringLiteral("base-url")), parser.isSet(QStringLiteral("cancel"))};
}

std::expected<Command, QString> accountsFrom(const QCommandLineParser& parser)
{
    return AccountsCommand{valueOf(parser, QStringLiteral("base-url"))};
}

/// The word after the command; nothing when there is none.
std::optional<std::string> profileAfter(const QCommandLineParser& parser)
{
    const QStringList words = parser.positionalArguments();
    return words.size() > 1 ? std::optional{words.at(1).toStdString()} : std::nullopt;
}

/// A command about the profile that is named after it.
template <class ProfileCommand>
std::expected<Command, QString> aboutProfileFrom(const QCommandLineParser& parser)
{
    const auto profile = profileAfter(parser);
    if (!profile) {
        return std::unexpected(QStringLiteral("Which profile? \"brisken-roost accounts\" lists their ids."));
    }
    return ProfileCommand{valueOf(parser, QStringLiteral("base-url")), *profile};
}

std::expected<Command, QString> refreshFrom(const QCommandLineParser& parser)
{
    return RefreshCommand{valueOf(parser, QStringLiteral("base-url")), parser.isSet(QStringLiteral("wait"))};
}

std::expected<Command, QString> quitFrom(const QCommandLineParser& parser)
{
    return QuitCommand{valueOf(parser, QStringLiteral("base-url"))};
}

std::expected<Command, QString> syncFrom(const QCommandLineParser& parser)
{
    return SyncCommand{valueOf(parser, QStringLiteral("base-url")), profileAfter(parser)};
}

std::expected<Command, QString> notifyFrom(const QCommandLineParser& parser)
{
    QStringList kinds;
    for (const std::string& kind : SampleEvents::kinds()) {
        kinds.append(QString::fromStdString(kind));
    }
    const auto kind = valueOf(parser, QStringLiteral("test"));
    if (!kind || !kinds.contains(*kind)) {
        const QString trouble = kind ? QStringLiteral("There is no kind of notification \"%1\": ").arg(*kind)
                                     : QStringLiteral("Which notification? With --test, ");
        const QString last = kinds.takeLast();
        return std::unexpected(trouble + kinds.join(QLatin1String(", ")) + QLatin1String(" and ") + last +
                               QLatin1String(" are known."));
    }
    auto locale = localeFrom(parser);
    if (!locale) {
        return std::unexpected(locale.error());
    }
    return NotifyCommand{kind->toStdString(), *std::move(locale), parser.isSet(QStringLiteral("wait"))};
}

std::expected<Command, QString> runFrom(const QCommandLineParser& parser)
{
    return RunCommand{valueOf(parser, QStringLiteral("base-url"))};
}

/// A command by its name: the options it takes, with a value and without, how many words may follow it, and
/// how they become a command.
struct Grammar {
    QString name;
    QStringList options;
    QStringList flags;
    int words;
    std::expected<Command, QString> (*from)(const QCommandLineParser&);
};

const Grammar grammars[] = {
    {QStringLiteral("run"), {QStringLiteral("base-url")}, {QStringLiteral("headless")}, 0, runFrom},
    {QStringLiteral("sign-in"), {QStringLiteral("base-url")}, {QStringLiteral("cancel")}, 0, signInFrom},
    {QStringLiteral("accounts"), {QStringLiteral("base-url")}, {}, 0, accountsFrom},
    {QStringLiteral("select"), {QStringLiteral("base-url")}, {}, 1, aboutProfileFrom<SelectCommand>},
    {QStringLiteral("refresh"), {QStringLiteral("base-url")}, {QStringLiteral("wait")}, 0, refreshFrom},
    {QStringLiteral("sign-out"), {QStringLiteral("base-url")}, {}, 1, aboutProfileFrom<SignOutCommand>},
    {QStringLiteral("quit"), {QStringLiteral("base-url")}, {}, 0, quitFrom},
    {QStringLiteral("sync"), {QStringLiteral("base-url")}, {}, 1, syncFrom},
    {QStringLiteral("status"),
     {QStringLiteral("profile"), QStringLiteral("format"), QStringLiteral("locale")},
     {},
     0,
     statusFrom},
    {QStringLiteral("fetch"), {QStringLiteral("profile"), QStringLiteral("base-url")}, {}, 0, fetchFrom},
    {QStringLiteral("notify"),
     {QStringLiteral("test"), QStringLiteral("locale")},
     {QStringLiteral("wait")},
     0,
     notifyFrom},
};

/// What may be given with every command.
const QStringList generalOptions{QStringLiteral("info")};

/// The grammar of the first word that is neither an option nor the value of one; null where there is none.
const Grammar* grammarOf(const QStringList& arguments)
{
    QStringList options = generalOptions;
    QStringList flags;
    for (const Grammar& grammar : grammars) {
        options += grammar.options;
        flags += grammar.flags;
    }
    options.removeDuplicates();
    flags.removeDuplicates();
    QCommandLineParser parser;
    addOptions(parser, options, flags);
    parser.parse(arguments);
    const QString word = parser.positionalArguments().value(0);
    const auto* found = std::ranges::find(grammars, word, &Grammar::name);
    return found == std::end(grammars) ? nullptr : found;
}

} // namespace

std::expected<CommandLine, QString> parseCommandLine(const QStringList& words, const QString& version)
{
    const auto unusable = [](const QString& what) {
        return std::unexpected(what + QStringLiteral(" Try brisken-roost --help."));
    };
    // The parser takes the first argument for the name of the program.
    const QStringList arguments = QStringList{QString{}} + words;
    const Grammar* grammar = grammarOf(arguments);
    QCommandLineParser parser;
    addOptions(parser, generalOptions + (grammar != nullptr ? grammar->options : QStringList{}),
               grammar != nullptr ? grammar->flags : QStringList{});
    if (!parser.parse(arguments)) {
        return unusable(parser.errorText());
    }
    CommandLine line;
    line.infoFile = valueOf(parser, QStringLiteral("info"));
    if (parser.isSet(QStringLiteral("help"))) {
        line.command = PrintCommand{helpText};
        return line;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        line.command = PrintCommand{QStringLiteral("brisken-roost %1\n").arg(version)};
        return line;
    }
    const QStringList positional = parser.positionalArguments();
    if (positional.isEmpty()) {
        return unusable(QStringLiteral("A command is missing."));
    }
    if (std::ranges::any_of(positional, isCallback)) {
        // No message repeats it: it holds a secret.
        if (positional.size() > 1) {
            return unusable(QStringLiteral("An address of a sign-in stands alone."));
        }
        line.command = OpenCallbackCommand{positional.first().toStdString()};
        return line;
    }
    if (grammar == nullptr) {
        return unusable(QStringLiteral("There is no command \"%1\".").arg(positional.first()));
    }
    if (positional.size() > grammar->words + 1) {
        return unusable(
            QStringLiteral("\"%1\" is one argument too many.").arg(positional.at(grammar->words + 1)));
    }
    auto command = grammar->from(parser);
    if (!command) {
        return unusable(command.error());
    }
    line.command = *std::move(command);
    return line;
}

} // namespace roost
