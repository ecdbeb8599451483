#include "programs/roost-service/AuthorizeRequest.h"

#include "programs/roost-service/FormFields.h"
#include "programs/roost-service/ProofKey.h"
#include "programs/roost-service/RedirectUri.h"

#include <algorithm>

namespace roost::local {

namespace {

using namespace Qt::StringLiterals;

/// An error code and its description.
using Fault = std::pair<QByteArray, QByteArray>;

std::optional<Fault> faultIn(const FormFields& form)
{
    if (form.repeatsAny()) {
        return Fault{"invalid_request", "A parameter comes more than once."};
    }
    const auto responseType = form.value("response_type");
    if (!responseType) {
        return Fault{"invalid_request", "response_type is missing."};
    }
    if (*responseType != "code") {
        return Fault{"unsupported_response_type", "Only code is known."};
    }
    if (form.value("response_mode").value_or("query") != "query") {
        return Fault{"invalid_request", "The only response_mode is query."};
    }
    const auto challenge = form.value("code_challenge");
    if (!challenge) {
        return Fault{"invalid_request", "code_challenge is missing."};
    }
    // RFC 7636 §4.3: what names no method is "plain".
    if (form.value("code_challenge_method").value_or("plain") != "S256") {
        return Fault{"invalid_request", "code_challenge_method must be S256."};
    }
    if (!isChallenge(*challenge)) {
        return Fault{"invalid_request", "code_challenge is no SHA-256 in base64url."};
    }
    return std::nullopt;
}

bool isRegistered(const RegisteredClient& client, const QByteArray& uri)
{
    return std::ranges::any_of(client.redirectUris,
                               [&](const QByteArray& known) { return isSameRedirect(known, uri); });
}

} // namespace

ReadRequest readAuthorizeRequest(const QByteArray& query, const AuthorizationServer& server,
                                 const QByteArray& resource)
{
    const auto form = FormFields::parse(query);
    if (!form) {
        return UntrustedRequest{u"The address of this page cannot be read."_s};
    }
    const auto id = form->value("client_id");
    const RegisteredClient* client = id && !form->repeats("client_id") ? server.client(*id) : nullptr;
    if (client == nullptr) {
        return UntrustedRequest{u"The application that sent you here is not known."_s};
    }
    const auto redirectUri = form->value("redirect_uri");
    if (!redirectUri || form->repeats("redirect_uri") || !isRegistered(*client, *redirectUri)) {
        return UntrustedRequest{
            u"The application did not register the address that it wants you to return to."_s};
    }
    const ReturnAddress back{*redirectUri, form->repeats("state") ? std::nullopt : form->value("state")};
    if (auto fault = faultIn(*form)) {
        return FaultyRequest{back, fault->first, fault->second};
    }
    const auto scope = form->value("scope");
    const auto scopes = scope ? scopesIn(*scope) : client->scopes;
    if (!scopes || !isWithin(*scopes, client->scopes)) {
        return FaultyRequest{back, "invalid_scope", "The client did not register for that."};
    }
    if (std::ranges::any_of(form->values("resource"),
                            [&](const QByteArray& asked) { return asked != resource; })) {
        return FaultyRequest{back, "invalid_target", "There is no such resource."};
    }
    return AuthorizeRequest{
        {*id, *redirectUri, *form->value("code_challenge"), *scopes, resource}, back, client->name};
}

} // namespace roost::local
