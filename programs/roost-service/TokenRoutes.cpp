#include "programs/roost-service/TokenRoutes.h"

#include "programs/roost-service/FormFields.h"
#include "programs/roost-service/OAuthAnswer.h"

namespace roost::local {

namespace {

using namespace Qt::StringLiterals;

constexpr const char* formType = "application/x-www-form-urlencoded";

Answer missing(const char* field)
{
    return oauthError("invalid_request", u"%1 is missing."_s.arg(QLatin1StringView(field)));
}

Answer unknownClient() { return oauthError("invalid_client", u"There is no such client."_s, 401); }

/// A client that tries to authenticate by a secret, which none here has.
std::optional<Answer> refusedSecret(const Request& request, const FormFields& form)
{
    if (!request.headerValues("Authorization").empty()) {
        Answer answer = oauthError("invalid_client", u"Clients do not authenticate here."_s, 401);
        // RFC 6749 §5.2: named after the scheme that the client used.
        answer.headers.emplace_back("WWW-Authenticate", "Basic realm=\"token\"");
        return answer;
    }
    if (form.value("client_secret") || form.value("client_assertion")) {
        return oauthError("invalid_client", u"Clients do not authenticate here."_s, 401);
    }
    return std::nullopt;
}

Answer refusalOf(TokenRefusal refusal)
{
    switch (refusal) {
    case TokenRefusal::invalidScope:
        return oauthError("invalid_scope", u"That is more than what was granted."_s);
    case TokenRefusal::invalidTarget:
        return oauthError("invalid_target", u"The grant is not for that resource."_s);
    case TokenRefusal::codeReused:
    case TokenRefusal::refreshTokenReused:
        return oauthError("invalid_grant", u"It was used before. The whole grant is revoked."_s);
    case TokenRefusal::invalidGrant:
        break;
    }
    return oauthError("invalid_grant", u"It is unknown, expired, revoked or not yours."_s);
}

} // namespace

std::optional<GrantOwner> TokenRoutes::ownerOf(const Request& request) const
{
    const auto form = FormFields::parse(request.body);
    if (!form) {
        return std::nullopt;
    }
    const bool isRefresh = form->value("grant_type") == "refresh_token";
    const auto presented = form->value(isRefresh ? "refresh_token" : "code");
    return presented ? state_.authorization.ownerOf(*presented) : std::nullopt;
}

Answer TokenRoutes::answer(const Request& request) const
{
    if (request.method != "POST") {
        return onlyMethod("POST");
    }
    for (const auto& [fault, error, status] :
         {std::tuple{OAuthFault::invalidClient400, "invalid_client", 400},
          std::tuple{OAuthFault::invalidClient401, "invalid_client", 401},
          std::tuple{OAuthFault::invalidGrant, "invalid_grant", 400}}) {
        if (state_.faults.meets(fault)) {
            return oauthError(error, u"The service was told to say so."_s, status);
        }
    }
    if (!isContentType(request, formType)) {
        return oauthError("invalid_request", u"The body must be application/x-www-form-urlencoded."_s);
    }
    if (!request.query.isEmpty()) {
        return oauthError("invalid_request", u"Parameters belong into the body."_s);
    }
    const auto form = FormFields::parse(request.body);
    if (!form || form->repeatsAny()) {
        return oauthError("invalid_request",
                          form ? u"A parameter comes more than once."_s : u"The body cannot be decoded."_s);
    }
    if (std::optional<Answer> refused = refusedSecret(request, *form)) {
        return *std::move(refused);
    }
    const auto client = form->value("client_id");
    if (!client) {
        return missing("client_id");
    }
    return state_.authorization.client(*client) == nullptr ? unknownClient() : perform(*form, *client);
}

Answer TokenRoutes::perform(const FormFields& form, const QByteArray& client) const
{
    const auto grantType = form.value("grant_type");
    if (!grantType) {
        return missing("grant_type");
    }
    if (*grantType == "authorization_code") {
        return exchange(form, client);
    }
    if (*grantType == "refresh_token") {
        return refresh(form, client);
    }
    return oauthError("unsupported_grant_type", u"Only authorization_code and refresh_token are known."_s);
}

Answer TokenRoutes::exchange(const FormFields& form, const QByteArray& client) const
{
    for (const char* field : {"code", "redirect_uri", "code_verifier"}) {
        if (!form.value(field)) {
            return missing(field);
        }
    }
    return told(state_.authorization.exchange({.client = client,
                                               .code = *form.value("code"),
                                               .redirectUri = *form.value("redirect_uri"),
                                               .verifier = *form.value("code_verifier"),
                                               .resources = form.values("resource")}));
}

Answer TokenRoutes::refresh(const FormFields& form, const QByteArray& client) const
{
    if (!state_.authorization.client(client)->refreshes) {
        return oauthError("unauthorized_client", u"The client did not register for refresh_token."_s);
    }
    const auto token = form.value("refresh_token");
    if (!token) {
        return missing("refresh_token");
    }
    const auto scope = form.value("scope");
    const auto scopes = scope ? scopesIn(*scope) : std::nullopt;
    if (scope && !scopes) {
        return oauthError("invalid_scope", u"scope holds one that is not known here."_s);
    }
    const bool keepsOld = state_.faults.meets(OAuthFault::noNewRefreshToken);
    return told(state_.authorization.refresh({client, *token, scopes, form.values("resource")},
                                             keepsOld ? Rotation::keepOld : Rotation::newToken));
}

Answer TokenRoutes::told(const std::expected<IssuedTokens, TokenRefusal>& outcome) const
{
    if (!outcome) {
        if (outcome.error() == TokenRefusal::refreshTokenReused) {
            state_.counters.refreshTokenReused();
        }
        return refusalOf(outcome.error());
    }
    const bool isBearer = !state_.faults.meets(OAuthFault::tokenTypeNotBearer);
    QJsonObject body{{u"access_token"_s, QString::fromLatin1(outcome->accessToken)},
                     {u"token_type"_s, isBearer ? u"Bearer"_s : u"mac"_s},
                     {u"scope"_s, QString::fromLatin1(textOf(outcome->scopes))}};
    if (!state_.faults.meets(OAuthFault::noExpiresIn)) {
        body.insert(u"expires_in"_s, static_cast<qint64>(outcome->expiresIn.count()));
    }
    if (outcome->refreshToken) {
        body.insert(u"refresh_token"_s, QString::fromLatin1(*outcome->refreshToken));
    }
    return oauthAnswer(body);
}

} // namespace roost::local
