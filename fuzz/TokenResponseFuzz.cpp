#include "fuzz/Require.h"
#include "service/OAuthAnswers.h"

#include <nlohmann/json.hpp>

#include <string>

namespace {

using namespace roost;
using fuzz::require;

constexpr Date now{std::chrono::milliseconds{1'718'000'000'123}};

void checkTokens(const TokenSet& tokens, const std::string& document)
{
    const auto json = nlohmann::json::parse(document, nullptr, false);
    require(json.is_object(), "tokens come in an object");
    require(json.at("access_token") == tokens.accessToken, "the access token is the one that was sent");
    require(json.at("refresh_token") == tokens.refreshToken, "the refresh token is the one that was sent");
    require(!tokens.accessToken.empty() && !tokens.refreshToken.empty(), "no token is empty");
    constexpr std::chrono::hours century{100 * 365 * 24};
    require(tokens.expiresAt - now <= century && now - tokens.expiresAt <= century, "expiry stays in reach");
    if (const auto sent = json.find("expires_in"); sent != json.end() && sent->is_number_integer()) {
        require((sent->get<double>() > 0) == (tokens.expiresAt > now), "expiry lies where it was said");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const char* data, std::size_t size)
{
    const std::string document{data, size};
    if (const auto tokens = OAuthAnswers::tokens({200, document}, now)) {
        checkTokens(*tokens, document);
    }
    for (const int status : {201, 400, 401, 500}) {
        require(!OAuthAnswers::tokens({status, document}, now), "tokens come with status 200");
    }
    if (const auto client = OAuthAnswers::registeredClient({201, document})) {
        require(!client->empty(), "a client id is never empty");
    }
    return 0;
}
