#include "service/OAuthRequests.h"

#include "model/JsonEncode.h"
#include "model/RoostJSON.h"
#include "service/FormEncoding.h"
#include "service/OAuthRecords.h"
#include "service/PKCE.h"

#include <array>
#include <map>
#include <utility>

namespace roost::OAuthRequests {

namespace {

using Form = std::map<std::string, std::string>;

HttpRequest post(const WebURL& endpoint)
{
    HttpRequest request;
    request.method = HttpRequest::Method::post;
    request.url = endpoint.url();
    return request;
}

HttpRequest tokenRequest(const OAuthEndpoints& endpoints, const Form& form)
{
    HttpRequest request = post(endpoints.tokenEndpoint);
    request.headers = {{"Content-Type", "application/x-www-form-urlencoded"}, {"Accept", "application/json"}};
    request.body = QByteArray::fromStdString(FormEncoding::formEncoded(form));
    return request;
}

/// `endpoint` with `query` after whatever it holds, before any fragment.
std::string appendingQuery(const std::string& endpoint, const std::string& query)
{
    const auto end = std::min(endpoint.find('#'), endpoint.size());
    const std::string address = endpoint.substr(0, end);
    const auto mark = address.find('?');
    std::string joint = "&";
    if (mark == std::string::npos) {
        joint = "?";
    } else if (mark + 1 == address.size()) {
        joint.clear();
    }
    return address + joint + query + endpoint.substr(end);
}

} // namespace

HttpRequest document(QUrl url)
{
    HttpRequest request;
    request.url = std::move(url);
    request.headers = {{"Accept", "application/json"}};
    return request;
}

HttpRequest registration(const OAuthEndpoints& endpoints)
{
    ClientRegistration client;
    client.clientName = "Brisken Roost for Mac";
    client.redirectURIs = {redirectURI};
    client.tokenEndpointAuthMethod = "none";
    client.grantTypes = {"authorization_code", "refresh_token"};
    client.responseTypes = {"code"};
    client.scope = "metrics:read posts:read channels:read";

    HttpRequest request = post(endpoints.registrationEndpoint);
    request.headers = {{"Content-Type", "application/json"}};
    request.body = QByteArray::fromStdString(RoostJSON::encoder().encode(client));
    return request;
}

HttpRequest exchange(const std::string& code, const AuthorizationRequest& request)
{
    return tokenRequest(request.endpoints, {{"grant_type", "authorization_code"},
                                            {"code", code},
                                            {"redirect_uri", request.redirectURI},
                                            {"client_id", request.clientID},
                                            {"code_verifier", request.verifier},
                                            {"resource", request.endpoints.resource}});
}

HttpRequest refresh(const std::string& refreshToken, const std::string& clientID,
                    const OAuthEndpoints& endpoints)
{
    return tokenRequest(endpoints, {{"grant_type", "refresh_token"},
                                    {"refresh_token", refreshToken},
                                    {"client_id", clientID},
                                    {"resource", endpoints.resource}});
}

std::expected<AuthorizationRequest, RoostAuthError>
authorization(OAuthEndpoints endpoints, std::string clientID, std::string verifier, std::string state)
{
    // The numbers alone: what the registration may ask for later is not asked of the user now.
    const std::array<std::pair<std::string, std::string>, 8> items{{
        {"response_type", "code"},
        {"client_id", clientID},
        {"redirect_uri", redirectURI},
        {"code_challenge", PKCE::challenge(verifier)},
        {"code_challenge_method", "S256"},
        {"state", state},
        {"scope", "metrics:read"},
        {"resource", endpoints.resource},
    }};
    std::string query;
    for (const auto& [name, value] : items) {
        query += (query.empty() ? "" : "&") + name + "=" + FormEncoding::percentEncoded(value);
    }
    auto url = WebURL::parse(appendingQuery(endpoints.authorizationEndpoint.text(), query));
    if (!url) {
        return std::unexpected(RoostAuthError{RoostAuthError::Kind::malformedResponse, 0, {}});
    }
    return AuthorizationRequest{*std::move(url), std::move(state),     std::move(verifier),
                                redirectURI,     std::move(endpoints), std::move(clientID)};
}

} // namespace roost::OAuthRequests
