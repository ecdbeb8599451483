#pragma once

#include "model/JsonFields.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The documents of the OAuth side as they stand on the wire.
namespace roost {

/// RFC 8414 §2.
struct AuthorizationServerMetadata {
    std::string issuer;
    std::string authorizationEndpoint;
    std::string tokenEndpoint;
    std::string registrationEndpoint;
    std::optional<std::vector<std::string>> codeChallengeMethodsSupported;
    /// RFC 9207 §3.
    std::optional<bool> authorizationResponseIssParameterSupported;
};

/// RFC 9728 §2.
struct ProtectedResourceMetadata {
    std::optional<std::string> resource;
};

/// RFC 7591 §2.
struct ClientRegistration {
    std::string clientName;
    std::vector<std::string> redirectURIs;
    std::string tokenEndpointAuthMethod;
    std::vector<std::string> grantTypes;
    std::vector<std::string> responseTypes;
    std::string scope;
};

/// RFC 7591 §3.2.1.
struct RegisteredClient {
    std::string clientID;
};

/// RFC 6749 §5.1.
struct TokenResponse {
    std::string accessToken;
    std::string tokenType;
    std::optional<std::int64_t> expiresIn;
    std::optional<std::string> refreshToken;
    std::optional<std::string> scope;
};

/// RFC 6749 §5.2.
struct OAuthErrorBody {
    std::string error;
};

template <>
struct JsonFields<AuthorizationServerMetadata> {
    using Record = AuthorizationServerMetadata;
    static constexpr auto fields = std::tuple(
        required("authorization_endpoint", &Record::authorizationEndpoint),
        optional("authorization_response_iss_parameter_supported",
                 &Record::authorizationResponseIssParameterSupported),
        optional("code_challenge_methods_supported", &Record::codeChallengeMethodsSupported),
        required("issuer", &Record::issuer), required("registration_endpoint", &Record::registrationEndpoint),
        required("token_endpoint", &Record::tokenEndpoint));
};

template <>
struct JsonFields<ProtectedResourceMetadata> {
    using Record = ProtectedResourceMetadata;
    static constexpr auto fields = std::tuple(optional("resource", &Record::resource));
};

template <>
struct JsonFields<ClientRegistration> {
    using Record = ClientRegistration;
    static constexpr auto fields =
        std::tuple(required("client_name", &Record::clientName), required("grant_types", &Record::grantTypes),
                   required("redirect_uris", &Record::redirectURIs),
                   required("response_types", &Record::responseTypes), required("scope", &Record::scope),
                   required("token_endpoint_auth_method", &Record::tokenEndpointAuthMethod));
};

template <>
struct JsonFields<RegisteredClient> {
    using Record = RegisteredClient;
    static constexpr auto fields = std::tuple(required("client_id", &Record::clientID));
};

template <>
struct JsonFields<TokenResponse> {
    using Record = TokenResponse;
    static constexpr auto fields =
        std::tuple(required("access_token", &Record::accessToken), optional("expires_in", &Record::expiresIn),
                   optional("refresh_token", &Record::refreshToken), optional("scope", &Record::scope),
                   required("token_type", &Record::tokenType));
};

template <>
struct JsonFields<OAuthErrorBody> {
    using Record = OAuthErrorBody;
    static constexpr auto fields = std::tuple(required("error", &Record::error));
};

} // namespace roost
