#include "programs/roost-service/ServiceOptions.h"

#include "programs/roost-service/AuthorizationServer.h"

#include <QCommandLineParser>

#include <limits>

namespace roost::local {

namespace {

using namespace Qt::StringLiterals;

constexpr const char* autoConsent = "--auto-consent";

void describeOptions(QCommandLineParser& parser)
{
    parser.setApplicationDescription(
        u"The local Roost service, for trying, developing and testing.\n\n"
        "Listens on 127.0.0.1 only. When ready it writes one line of JSON to standard output: \"base\", "
        "\"control\"\n"
        "and, by profile, \"tokens\". It ends when its standard input closes, and on SIGTERM and SIGINT.\n\n"
        "The control takes JSON objects: GET /state, and POST /scenario, /advance and /reset; for the\n"
        "authorization server /fault, /consent, /lifetimes, /revoke, /expire and /forget-clients."_s);
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOptions({
        {u"port"_s, u"Port of the service; 0, the default, takes a free one."_s, u"port"_s},
        {u"control-port"_s, u"Port of the run-time control; 0, the default, takes a free one."_s, u"port"_s},
        {u"certificate"_s,
         u"Has the service speak https, as localhost, and show the certificate in this PEM file."_s,
         u"file"_s},
        {u"key"_s, u"The key of that certificate, in a PEM file."_s, u"file"_s},
        {u"seed"_s, u"Makes numbers and tokens the same in every run."_s, u"number"_s},
        {u"profiles"_s, u"How many profiles there are; 3 by default."_s, u"number"_s},
        {u"auto-consent"_s,
         u"Allows authorization requests at once instead of showing the page. May be followed by the id of "
         "the profile; otherwise it is the first one that nobody is signed in to."_s},
        {u"access-ttl"_s, u"How long an access token is good; 3600 by default."_s, u"seconds"_s},
        {u"refresh-ttl"_s, u"How long a refresh token is good; 2592000 by default."_s, u"seconds"_s},
        {u"code-ttl"_s, u"How long an authorization code is good; 60 by default."_s, u"seconds"_s},
        {u"time-scale"_s, u"How many times as fast as the clock the profiles live; 1 by default."_s,
         u"factor"_s},
        {{u"h"_s, u"help"_s}, u"Shows this help."_s},
        {{u"v"_s, u"version"_s}, u"Shows the version."_s},
    });
}

/// Reads numbers, each within its range, and keeps the first complaint.
class Numbers {
public:
    explicit Numbers(const QCommandLineParser& parser) : parser_(parser) {}

    qint64 read(const QString& name, qint64 lowest, qint64 highest, qint64 otherwise)
    {
        if (!parser_.isSet(name)) {
            return otherwise;
        }
        bool isNumber = false;
        const qint64 number = parser_.value(name).toLongLong(&isNumber);
        if (isNumber && number >= lowest && number <= highest) {
            return number;
        }
        if (complaint_.isEmpty()) {
            complaint_ = u"--%1 needs a whole number from %2 to %3."_s.arg(name).arg(lowest).arg(highest);
        }
        return otherwise;
    }

    const QString& complaint() const { return complaint_; }

private:
    const QCommandLineParser& parser_;
    QString complaint_;
};

/// Takes the profile that may follow "--auto-consent" out of `arguments`: the parser knows no value that can
/// be left out.
std::optional<std::string> takeConsentProfile(QStringList& arguments)
{
    const QLatin1StringView option(autoConsent);
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        if (arguments[i].startsWith(option + u'=')) {
            const QString profile = arguments[i].mid(option.size() + 1);
            arguments[i] = option;
            return profile.toStdString();
        }
        if (arguments[i] == option && i + 1 < arguments.size() && !arguments[i + 1].startsWith(u'-')) {
            return arguments.takeAt(i + 1).toStdString();
        }
    }
    return std::nullopt;
}

} // namespace

std::expected<ServiceOptions, QString> parseServiceOptions(const QStringList& given)
{
    QStringList arguments = given;
    std::optional<std::string> consentProfile = takeConsentProfile(arguments);
    QCommandLineParser parser;
    describeOptions(parser);
    if (!parser.parse(arguments)) {
        return std::unexpected(parser.errorText());
    }
    if (!parser.positionalArguments().isEmpty()) {
        return std::unexpected(u"\"%1\" is not an option."_s.arg(parser.positionalArguments().constFirst()));
    }
    ServiceOptions options;
    Numbers numbers(parser);
    options.port = static_cast<quint16>(numbers.read(u"port"_s, 0, 65'535, 0));
    options.controlPort = static_cast<quint16>(numbers.read(u"control-port"_s, 0, 65'535, 0));
    options.certificateFile = parser.value(u"certificate"_s);
    options.keyFile = parser.value(u"key"_s);
    if (options.certificateFile.isEmpty() != options.keyFile.isEmpty()) {
        return std::unexpected(u"--certificate and --key need each other."_s);
    }
    if (parser.isSet(u"seed"_s)) {
        options.seed =
            static_cast<std::uint64_t>(numbers.read(u"seed"_s, 0, std::numeric_limits<qint64>::max(), 0));
    }
    options.profiles = static_cast<int>(numbers.read(u"profiles"_s, 1, 10'000, options.profiles));
    options.autoConsent = parser.isSet(u"auto-consent"_s);
    options.autoConsentProfile = std::move(consentProfile);
    for (const auto& [name, lifetime] : {std::pair{u"access-ttl"_s, &options.accessTokenLifetime},
                                         std::pair{u"refresh-ttl"_s, &options.refreshTokenLifetime},
                                         std::pair{u"code-ttl"_s, &options.codeLifetime}}) {
        *lifetime = std::chrono::seconds(numbers.read(name, 0, longestLifetime.count(), lifetime->count()));
    }
    options.timeScale = numbers.read(u"time-scale"_s, 1, 3'600, options.timeScale);
    options.help = parser.isSet(u"help"_s);
    options.version = parser.isSet(u"version"_s);
    if (!numbers.complaint().isEmpty()) {
        return std::unexpected(numbers.complaint());
    }
    return options;
}

QString serviceHelp()
{
    QCommandLineParser parser;
    describeOptions(parser);
    return parser.helpText();
}

} // namespace roost::local
