#include "programs/roost-service/MetadataRoutes.h"

#include "programs/roost-service/OAuthAnswer.h"
#include "programs/roost-service/OAuthPaths.h"

#include <QJsonArray>

namespace roost::local {

namespace {

using namespace Qt::StringLiterals;

/// Documentation addresses, RFC 5737 and RFC 2606: nobody answers there.
constexpr const char* foreignIssuer = "https://issuer.example";
constexpr const char* insecureOrigin = "http://192.0.2.1";
/// Valid, and changed by whoever decodes it and encodes it again.
constexpr const char* extraQuery = "?tenant=a%7Eb&audience=x%20y&flag";

QJsonArray scopeNames()
{
    QJsonArray names;
    for (const char* scope : supportedScopes) {
        names.append(QLatin1StringView(scope));
    }
    return names;
}

void bend(QJsonObject& document, OAuthFaults& faults)
{
    struct InsecureEndpoint {
        OAuthFault fault;
        const char* key;
        const char* path;
    };
    constexpr std::array insecure{
        InsecureEndpoint{OAuthFault::insecureIssuer, "issuer", ""},
        InsecureEndpoint{OAuthFault::insecureAuthorizationEndpoint, "authorization_endpoint", authorizePath},
        InsecureEndpoint{OAuthFault::insecureTokenEndpoint, "token_endpoint", tokenPath},
        InsecureEndpoint{OAuthFault::insecureRegistrationEndpoint, "registration_endpoint", registrationPath},
    };
    for (const auto& [fault, key, path] : insecure) {
        if (faults.meets(fault)) {
            document.insert(QLatin1StringView(key),
                            QLatin1StringView(insecureOrigin) + QLatin1StringView(path));
        }
    }
    const QString methods = u"code_challenge_methods_supported"_s;
    if (faults.meets(OAuthFault::noS256)) {
        document.insert(methods, QJsonArray{u"S384"_s, u"s256"_s});
    }
    if (faults.meets(OAuthFault::plainOnly)) {
        document.insert(methods, QJsonArray{u"plain"_s});
    }
    if (faults.meets(OAuthFault::noChallengeMethods)) {
        document.remove(methods);
    }
    if (faults.meets(OAuthFault::foreignIssuer)) {
        document.insert(u"issuer"_s, QLatin1StringView(foreignIssuer));
    }
    if (faults.meets(OAuthFault::authorizationEndpointQuery)) {
        const QString key = u"authorization_endpoint"_s;
        document.insert(key, document.value(key).toString() + QLatin1StringView(extraQuery));
    }
    if (faults.meets(OAuthFault::noRegistrationEndpoint)) {
        document.remove(u"registration_endpoint"_s);
    }
    if (faults.meets(OAuthFault::issNotPromised)) {
        document.remove(u"authorization_response_iss_parameter_supported"_s);
    }
}

} // namespace

QString MetadataRoutes::address(const char* path) const { return QString::fromLatin1(issuer_ + path); }

Answer MetadataRoutes::ofServer(const Request& request) const
{
    if (request.method != "GET") {
        return onlyMethod("GET");
    }
    QJsonObject document{
        {u"issuer"_s, address("")},
        {u"authorization_endpoint"_s, address(authorizePath)},
        {u"token_endpoint"_s, address(tokenPath)},
        {u"registration_endpoint"_s, address(registrationPath)},
        {u"scopes_supported"_s, scopeNames()},
        {u"response_types_supported"_s, QJsonArray{u"code"_s}},
        {u"response_modes_supported"_s, QJsonArray{u"query"_s}},
        {u"grant_types_supported"_s, QJsonArray{u"authorization_code"_s, u"refresh_token"_s}},
        {u"token_endpoint_auth_methods_supported"_s, QJsonArray{u"none"_s}},
        {u"code_challenge_methods_supported"_s, QJsonArray{u"S256"_s}},
        {u"authorization_response_iss_parameter_supported"_s, true},
        {u"protected_resources"_s, QJsonArray{address(protectedResource)}},
    };
    bend(document, state_.faults);
    return jsonAnswer(document);
}

Answer MetadataRoutes::ofResource(const Request& request) const
{
    if (request.method != "GET") {
        return onlyMethod("GET");
    }
    if (state_.faults.meets(OAuthFault::resourceNotFound)) {
        return jsonAnswer({{u"error"_s, u"not_found"_s}}, 404);
    }
    const bool isEmpty = state_.faults.meets(OAuthFault::resourceEmpty);
    return jsonAnswer({{u"resource"_s, isEmpty ? u""_s : address(protectedResource)},
                       {u"authorization_servers"_s, QJsonArray{address("")}},
                       {u"scopes_supported"_s, scopeNames()},
                       {u"bearer_methods_supported"_s, QJsonArray{u"header"_s}}});
}

} // namespace roost::local
