#include "programs/roost-service/OAuthControl.h"

#include "programs/roost-service/JsonArguments.h"

#include <array>

namespace roost::local {

namespace {

using namespace Qt::StringLiterals;

constexpr std::array<const char*, 3> consentNames{"off", "allow", "deny"};

std::expected<void, QString> verdict(const JsonArguments& arguments)
{
    if (arguments.complaint()) {
        return std::unexpected(*arguments.complaint());
    }
    return {};
}

/// The profile under "profile", which must be one that there is.
std::optional<std::string> profileIn(JsonArguments& arguments, const ServiceState& state)
{
    const auto profile = arguments.text(u"profile"_s);
    if (profile && state.profile(profile->toStdString()) == nullptr) {
        arguments.complain(u"There is no profile \"%1\"."_s.arg(*profile));
    }
    return profile ? std::optional(profile->toStdString()) : std::nullopt;
}

} // namespace

bool OAuthControl::owns(const QByteArray& path)
{
    constexpr std::array<const char*, 6> paths{"/fault",  "/consent", "/lifetimes",
                                               "/revoke", "/expire",  "/forget-clients"};
    return std::ranges::any_of(paths, [&](const char* known) { return path == known; });
}

std::expected<void, QString> OAuthControl::perform(const QByteArray& path, const QJsonObject& json)
{
    if (path == "/fault") {
        return setFault(json);
    }
    if (path == "/consent") {
        return setConsent(json);
    }
    if (path == "/lifetimes") {
        return setLifetimes(json);
    }
    if (path == "/revoke") {
        return revoke(json);
    }
    if (path == "/expire") {
        return expire(json);
    }
    return forgetClients(json);
}

OAuthControl::Done OAuthControl::setFault(const QJsonObject& json)
{
    JsonArguments arguments(json);
    const QString name = arguments.text(u"kind"_s).value_or(QString());
    const auto times = arguments.integer(u"times"_s, 1, 1'000'000);
    arguments.allow({u"kind", u"times"});
    const bool isNone = name == u"none"_s && !times;
    const auto fault = oauthFaultNamed(name.toStdString());
    if (!fault && !isNone) {
        arguments.complain(u"\"%1\" is no kind of fault."_s.arg(name));
    }
    if (arguments.complaint()) {
        return verdict(arguments);
    }
    if (isNone) {
        state_.faults.clear();
    } else {
        state_.faults.set(*fault, times ? std::optional(static_cast<int>(*times)) : std::nullopt);
    }
    return {};
}

OAuthControl::Done OAuthControl::setConsent(const QJsonObject& json)
{
    JsonArguments arguments(json);
    const QString name = arguments.text(u"auto"_s).value_or(QString());
    const auto* known = std::ranges::find(consentNames, name.toStdString());
    const auto profile = profileIn(arguments, state_);
    arguments.allow({u"auto", u"profile"});
    if (known == consentNames.end()) {
        arguments.complain(u"\"auto\" must be \"allow\", \"deny\" or \"off\"."_s);
    }
    if (!arguments.complaint()) {
        state_.consent = {static_cast<Consent::Answer>(known - consentNames.begin()), profile};
    }
    return verdict(arguments);
}

OAuthControl::Done OAuthControl::setLifetimes(const QJsonObject& json)
{
    JsonArguments arguments(json);
    Lifetimes lifetimes = state_.authorization.lifetimes();
    for (const auto& [key, lifetime] :
         {std::pair{u"access"_s, &lifetimes.accessToken}, std::pair{u"refresh"_s, &lifetimes.refreshToken},
          std::pair{u"code"_s, &lifetimes.code}}) {
        *lifetime = std::chrono::seconds(
            arguments.integer(key, 0, longestLifetime.count()).value_or(lifetime->count()));
    }
    arguments.allow({u"access", u"refresh", u"code"});
    if (!arguments.complaint()) {
        state_.authorization.setLifetimes(lifetimes);
    }
    return verdict(arguments);
}

OAuthControl::Done OAuthControl::revoke(const QJsonObject& json)
{
    JsonArguments arguments(json);
    const auto profile = profileIn(arguments, state_);
    arguments.allow({u"profile"});
    if (!arguments.complaint()) {
        if (profile) {
            state_.authorization.revoke(*profile);
        } else {
            state_.authorization.revokeAll();
        }
    }
    return verdict(arguments);
}

OAuthControl::Done OAuthControl::expire(const QJsonObject& json)
{
    JsonArguments arguments(json);
    const QString tokens = arguments.text(u"tokens"_s).value_or(QString());
    arguments.allow({u"tokens"});
    if (tokens != u"access"_s && tokens != u"refresh"_s) {
        arguments.complain(u"\"tokens\" must be \"access\" or \"refresh\"."_s);
    }
    if (!arguments.complaint()) {
        if (tokens == u"access"_s) {
            state_.authorization.expireAccessTokens();
        } else {
            state_.authorization.expireRefreshTokens();
        }
    }
    return verdict(arguments);
}

OAuthControl::Done OAuthControl::forgetClients(const QJsonObject& json)
{
    JsonArguments arguments(json);
    arguments.allow({});
    if (!arguments.complaint()) {
        state_.authorization.forgetClients();
    }
    return verdict(arguments);
}

QJsonObject OAuthControl::toJson() const
{
    const AuthorizationServer& server = state_.authorization;
    QJsonObject consent{
        {u"auto"_s, QLatin1StringView(consentNames[static_cast<std::size_t>(state_.consent.answer)])}};
    if (state_.consent.profile) {
        consent.insert(u"profile"_s, QString::fromStdString(*state_.consent.profile));
    }
    const auto seconds = [](std::chrono::seconds time) { return static_cast<qint64>(time.count()); };
    return {{u"clients"_s, server.clientCount()},
            {u"grants"_s, server.grantCount()},
            {u"consent"_s, consent},
            {u"lifetimes"_s, QJsonObject{{u"access"_s, seconds(server.lifetimes().accessToken)},
                                         {u"refresh"_s, seconds(server.lifetimes().refreshToken)},
                                         {u"code"_s, seconds(server.lifetimes().code)}}},
            {u"faults"_s, state_.faults.toJson()}};
}

} // namespace roost::local
