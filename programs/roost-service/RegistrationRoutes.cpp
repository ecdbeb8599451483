#include "programs/roost-service/RegistrationRoutes.h"

#include "programs/roost-service/OAuthAnswer.h"
#include "programs/roost-service/RedirectUri.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <expected>
#include <initializer_list>

namespace roost::local {

namespace {

using namespace Qt::StringLiterals;

constexpr qsizetype mostRedirects = 10;
constexpr qsizetype longestName = 100;

/// A complaint: the error code and a sentence.
struct Complaint {
    const char* error;
    QString sentence;
};

template <class T>
using Read = std::expected<T, Complaint>;

std::unexpected<Complaint> badMetadata(const QString& sentence)
{
    return std::unexpected(Complaint{"invalid_client_metadata", sentence});
}

Read<std::vector<QByteArray>> redirectsIn(const QJsonObject& json)
{
    const auto refused = [](const QString& sentence) {
        return std::unexpected(Complaint{"invalid_redirect_uri", sentence});
    };
    const QJsonArray array = json.value(u"redirect_uris"_s).toArray();
    if (array.isEmpty() || array.size() > mostRedirects) {
        return refused(u"redirect_uris must be an array of 1 to 10 addresses."_s);
    }
    std::vector<QByteArray> redirects;
    for (const QJsonValue& value : array) {
        redirects.push_back(value.toString().toUtf8());
        if (!mayBeRegistered(redirects.back())) {
            return refused(
                u"A redirect URI must have a private-use scheme or be http to the loopback interface, "
                "without a fragment."_s);
        }
    }
    return redirects;
}

/// The texts of an array, each one of `known`; `otherwise` when the member is absent (RFC 7591 §2).
Read<QStringList> choicesIn(const QJsonObject& json, const QString& key, const QStringList& known,
                            const QStringList& otherwise)
{
    const QJsonValue value = json.value(key);
    if (value.isUndefined()) {
        return otherwise;
    }
    QStringList choices;
    for (const QJsonValue& choice : value.toArray()) {
        choices.append(choice.toString());
        if (!known.contains(choices.constLast())) {
            return badMetadata(u"%1 may hold only: %2."_s.arg(key, known.join(u", "_s)));
        }
    }
    if (!choices.contains(known.constFirst())) {
        return badMetadata(u"%1 must hold %2."_s.arg(key, known.constFirst()));
    }
    return choices;
}

Read<Scopes> scopesIn(const QJsonObject& json)
{
    const QJsonValue value = json.value(u"scope"_s);
    if (value.isUndefined()) {
        return allScopes();
    }
    const std::optional<Scopes> scopes = local::scopesIn(value.toString().toUtf8());
    return scopes ? Read<Scopes>(*scopes) : badMetadata(u"scope holds one that is not known here."_s);
}

Read<QByteArray> nameIn(const QJsonObject& json)
{
    const QJsonValue value = json.value(u"client_name"_s);
    const QString name = value.toString();
    if (!(value.isUndefined() || value.isString()) || name.size() > longestName ||
        std::ranges::any_of(name, [](QChar c) { return c.category() == QChar::Other_Control; })) {
        return badMetadata(u"client_name must be a text of up to 100 characters."_s);
    }
    return name.toUtf8();
}

struct Registration {
    RegisteredClient client;
    QJsonObject echo;
};

Read<Registration> registrationIn(const QJsonObject& json)
{
    const auto redirects = redirectsIn(json);
    const auto grants = choicesIn(json, u"grant_types"_s, {u"authorization_code"_s, u"refresh_token"_s},
                                  {u"authorization_code"_s});
    const auto responses = choicesIn(json, u"response_types"_s, {u"code"_s}, {u"code"_s});
    const auto scopes = scopesIn(json);
    const auto name = nameIn(json);
    // An absent method would mean client_secret_basic, and there are no secrets to be had here.
    if (json.value(u"token_endpoint_auth_method"_s) != u"none"_s) {
        return badMetadata(u"token_endpoint_auth_method must be none."_s);
    }
    if (!redirects) {
        return std::unexpected(redirects.error());
    }
    for (const auto* read : {&grants, &responses}) {
        if (!*read) {
            return std::unexpected(read->error());
        }
    }
    if (!scopes) {
        return std::unexpected(scopes.error());
    }
    if (!name) {
        return std::unexpected(name.error());
    }
    QJsonObject echo{{u"redirect_uris"_s, json.value(u"redirect_uris"_s)},
                     {u"token_endpoint_auth_method"_s, u"none"_s},
                     {u"grant_types"_s, QJsonArray::fromStringList(*grants)},
                     {u"response_types"_s, QJsonArray::fromStringList(*responses)},
                     {u"scope"_s, QString::fromLatin1(textOf(*scopes))}};
    if (!name->isEmpty()) {
        echo.insert(u"client_name"_s, QString::fromUtf8(*name));
    }
    return Registration{{*name, *redirects, *scopes, grants->contains(u"refresh_token"_s)}, echo};
}

} // namespace

Answer RegistrationRoutes::answer(const Request& request) const
{
    if (request.method != "POST") {
        return onlyMethod("POST");
    }
    if (!isContentType(request, "application/json")) {
        return oauthError("invalid_client_metadata", u"The body must be application/json."_s);
    }
    const QJsonDocument document = QJsonDocument::fromJson(request.body);
    if (!document.isObject()) {
        return oauthError("invalid_client_metadata", u"The body must be a JSON object."_s);
    }
    Read<Registration> registration = registrationIn(document.object());
    if (!registration) {
        return oauthError(registration.error().error, registration.error().sentence);
    }
    QJsonObject body = registration->echo;
    const QByteArray id = state_.authorization.registerClient(std::move(registration->client));
    const bool isNameless = state_.faults.meets(OAuthFault::emptyClientId);
    body.insert(u"client_id"_s, isNameless ? u""_s : QString::fromLatin1(id));
    body.insert(u"client_id_issued_at"_s,
                static_cast<qint64>(
                    std::chrono::floor<std::chrono::seconds>(state_.clock()).time_since_epoch().count()));
    return oauthAnswer(body, state_.faults.meets(OAuthFault::registrationOk) ? 200 : 201);
}

} // namespace roost::local
