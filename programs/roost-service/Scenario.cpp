#include "programs/roost-service/Scenario.h"

#include "programs/roost-service/JsonArguments.h"

#include <algorithm>

namespace roost::local {

namespace {

using namespace Qt::StringLiterals;
using Kind = Scenario::Kind;
using std::chrono::milliseconds;

constexpr qint64 mostBytes = 256LL * 1024 * 1024;
constexpr qint64 longestDelay = 3'600'000;
constexpr qint64 farthestOffset = 100LL * 366 * 86'400;

/// What a kind means when nothing else is said.
Scenario defaultsOf(Kind kind)
{
    Scenario scenario;
    scenario.kind = kind;
    switch (kind) {
    case Kind::redirect:
        scenario.status = 307;
        break;
    case Kind::oauthError:
        scenario.status = 400;
        scenario.error = "invalid_grant";
        break;
    case Kind::delay:
        scenario.delay = milliseconds(1000);
        break;
    case Kind::drip:
    case Kind::dripHead:
        scenario.delay = milliseconds(100);
        scenario.bytes = 1;
        break;
    case Kind::truncated:
        scenario.bytes = 20;
        break;
    case Kind::huge:
        scenario.bytes = 8LL * 1024 * 1024;
        break;
    case Kind::gzipBomb:
        scenario.bytes = 32LL * 1024 * 1024;
        break;
    default:
        break;
    }
    return scenario;
}

bool isHeaderText(const QString& text)
{
    return std::ranges::all_of(text, [](QChar c) { return c >= u' ' && c <= u'~'; });
}

void readTexts(Scenario& scenario, JsonArguments& arguments)
{
    if (const auto retryAfter = arguments.text(u"retryAfter"_s)) {
        scenario.retryAfter = retryAfter->toLatin1();
    }
    if (const auto body = arguments.text(u"body"_s)) {
        scenario.body = body->toUtf8();
    }
    if (const auto location = arguments.text(u"location"_s)) {
        scenario.location = location->toLatin1();
    }
    if (const auto error = arguments.text(u"error"_s)) {
        scenario.error = error->toLatin1();
    }
    for (const QString& key : {u"retryAfter"_s, u"location"_s}) {
        if (!isHeaderText(arguments.text(key).value_or(QString()))) {
            arguments.complain(u"\"%1\" must be printable ASCII."_s.arg(key));
        }
    }
    const QJsonObject headers = arguments.object(u"headers"_s).value_or(QJsonObject());
    for (auto header = headers.begin(); header != headers.end(); ++header) {
        const QString value = header.value().toString();
        if (!header.value().isString() || header.key().isEmpty() || !isHeaderText(header.key() + value)) {
            arguments.complain(u"\"headers\" must hold texts of printable ASCII."_s);
        }
        scenario.headers.emplace_back(header.key().toLatin1(), value.toLatin1());
    }
}

} // namespace

std::expected<Scenario, QString> scenarioFromJson(const QJsonObject& json)
{
    JsonArguments arguments(json);
    const QString name = arguments.text(u"kind"_s).value_or(QString());
    const auto* known = std::ranges::find(scenarioKindNames, name.toStdString());
    if (known == scenarioKindNames.end()) {
        return std::unexpected(arguments.complaint().value_or(u"\"%1\" is no kind of scenario."_s.arg(name)));
    }
    Scenario scenario = defaultsOf(static_cast<Kind>(known - scenarioKindNames.begin()));
    scenario.status = static_cast<int>(arguments.integer(u"status"_s, 200, 999).value_or(scenario.status));
    scenario.delay =
        milliseconds(arguments.integer(u"delayMs"_s, 0, longestDelay).value_or(scenario.delay.count()));
    scenario.offset =
        std::chrono::seconds(arguments.integer(u"seconds"_s, -farthestOffset, farthestOffset).value_or(0));
    scenario.bytes = arguments.integer(u"bytes"_s, 0, mostBytes).value_or(scenario.bytes);
    if ((scenario.kind == Kind::drip || scenario.kind == Kind::dripHead) && scenario.bytes < 1) {
        arguments.complain(u"\"bytes\" of a drip must be at least 1."_s);
    }
    scenario.processed = arguments.flag(u"processed"_s).value_or(false);
    if (const auto times = arguments.integer(u"times"_s, 1, 1'000'000)) {
        scenario.times = static_cast<int>(*times);
    }
    readTexts(scenario, arguments);
    arguments.allow({u"kind", u"status", u"delayMs", u"seconds", u"bytes", u"processed", u"times",
                     u"retryAfter", u"body", u"location", u"error", u"headers"});
    if (arguments.complaint()) {
        return std::unexpected(*arguments.complaint());
    }
    return scenario;
}

QJsonObject toJson(const Scenario& scenario)
{
    const std::string_view name = scenarioKindNames[static_cast<std::size_t>(scenario.kind)];
    QJsonObject json{{u"kind"_s, QLatin1StringView(name.data(), static_cast<qsizetype>(name.size()))}};
    if (scenario.times) {
        json.insert(u"times"_s, *scenario.times);
    }
    return json;
}

} // namespace roost::local
