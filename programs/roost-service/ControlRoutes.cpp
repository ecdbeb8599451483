#include "programs/roost-service/ControlRoutes.h"

#include "model/RoostJSON.h"
#include "programs/roost-service/JsonArguments.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <array>

namespace roost::local {

namespace {

using namespace Qt::StringLiterals;

constexpr qint64 farthestAdvance = 10LL * 366 * 86'400;
constexpr std::array<const char*, 3> actions{"/scenario", "/advance", "/reset"};

Answer refusal(const QString& sentence, int status) { return jsonAnswer({{u"error"_s, sentence}}, status); }

Answer wrongMethod(const char* allowed)
{
    Answer answer = refusal(u"This takes %1 only."_s.arg(QLatin1StringView(allowed)), 405);
    answer.headers.emplace_back("Allow", allowed);
    return answer;
}

} // namespace

Answer ControlRoutes::answer(const Request& request)
{
    if (!request.headerValues("Origin").empty()) {
        return refusal(u"Web pages may not control the service."_s, 403);
    }
    if (request.path == "/state") {
        return request.method == "GET" ? jsonAnswer(stateJson()) : wrongMethod("GET");
    }
    if (!OAuthControl::owns(request.path) &&
        std::ranges::none_of(actions, [&](const char* action) { return request.path == action; })) {
        return refusal(u"There is nothing here."_s, 404);
    }
    if (request.method != "POST") {
        return wrongMethod("POST");
    }
    QJsonParseError error{};
    const QJsonDocument document =
        request.body.isEmpty() ? QJsonDocument(QJsonObject()) : QJsonDocument::fromJson(request.body, &error);
    if (!document.isObject()) {
        return refusal(u"The body must be a JSON object."_s, 400);
    }
    const Done done = perform(request.path, document.object());
    return done ? jsonAnswer(stateJson()) : refusal(done.error(), 400);
}

ControlRoutes::Done ControlRoutes::perform(const QByteArray& path, const QJsonObject& json)
{
    if (path == "/scenario") {
        return setScenario(json);
    }
    if (path == "/advance") {
        return advance(json);
    }
    return OAuthControl::owns(path) ? oauth_.perform(path, json) : reset(json);
}

ControlRoutes::Done ControlRoutes::setScenario(QJsonObject json)
{
    JsonArguments arguments(json);
    const QString profile =
        arguments.text(u"profile"_s).value_or(QString::fromLatin1(ScenarioBook::everyone));
    const QString endpointName = arguments.text(u"endpoint"_s).value_or(u"widget"_s);
    const std::optional<Endpoint> endpoint = endpointNamed(endpointName.toStdString());
    if (!endpoint) {
        arguments.complain(u"\"%1\" is no endpoint."_s.arg(endpointName));
    }
    if (profile != QLatin1StringView(ScenarioBook::everyone) &&
        state_.profile(profile.toStdString()) == nullptr) {
        arguments.complain(u"There is no profile \"%1\"."_s.arg(profile));
    }
    if (arguments.complaint()) {
        return std::unexpected(*arguments.complaint());
    }
    json.remove(u"profile"_s);
    json.remove(u"endpoint"_s);
    if (json == QJsonObject{{u"kind"_s, u"none"_s}}) {
        state_.scenarios.set(profile.toStdString(), *endpoint, std::nullopt);
        return {};
    }
    const auto scenario = scenarioFromJson(json);
    if (!scenario) {
        return std::unexpected(scenario.error());
    }
    state_.scenarios.set(profile.toStdString(), *endpoint, *scenario);
    return {};
}

ControlRoutes::Done ControlRoutes::advance(const QJsonObject& json)
{
    JsonArguments arguments(json);
    const auto seconds = arguments.integer(u"seconds"_s, -farthestAdvance, farthestAdvance);
    arguments.allow({u"seconds"});
    if (!seconds) {
        arguments.complain(u"\"seconds\" is missing."_s);
    }
    if (arguments.complaint()) {
        return std::unexpected(*arguments.complaint());
    }
    state_.advanced += std::chrono::seconds(*seconds);
    return {};
}

ControlRoutes::Done ControlRoutes::reset(const QJsonObject& json)
{
    JsonArguments arguments(json);
    arguments.allow({});
    if (arguments.complaint()) {
        return std::unexpected(*arguments.complaint());
    }
    state_.reset();
    return {};
}

QJsonObject ControlRoutes::stateJson() const
{
    QJsonObject profiles;
    for (const LivingProfile& profile : state_.profiles) {
        profiles.insert(QString::fromStdString(profile.id()),
                        QJsonObject{{u"name"_s, QString::fromStdString(profile.name())},
                                    {u"requests"_s, state_.counters.toJson(profile.id())},
                                    {u"grants"_s, state_.authorization.grantCount(profile.id())}});
    }
    QJsonObject json = state_.counters.toJson();
    json.insert(u"now"_s, QString::fromStdString(RoostJSON::formatDate(state_.now())));
    json.insert(u"profiles"_s, profiles);
    json.insert(u"oauth"_s, oauth_.toJson());
    json.insert(u"scenarios"_s, state_.scenarios.toJson());
    return json;
}

} // namespace roost::local
