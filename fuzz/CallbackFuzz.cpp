#include "fuzz/Require.h"
#include "service/AuthorizationRequest.h"

#include <string>

namespace {

using namespace roost;
using fuzz::require;
using Kind = RoostAuthError::Kind;

const std::string address = "briskenroost://oauth/callback";

AuthorizationRequest request(bool issuerPromised)
{
    const auto at = [](const char* text) { return *WebURL::parse(text); };
    return {at("https://roost.example/authorize"),
            "S",
            "verifier",
            address,
            {at("https://roost.example"), at("https://roost.example/a"), at("https://roost.example/t"),
             at("https://roost.example/r"), "resource", issuerPromised},
            "client"};
}

std::expected<std::string, RoostAuthError> codeIn(const std::string& callback, bool issuerPromised = false)
{
    return authorizationCode(callback, request(issuerPromised));
}

bool isRefused(const std::string& callback, Kind kind)
{
    const auto code = codeIn(callback);
    return !code && code.error().kind == kind;
}

void checkAnyText(const std::string& callback)
{
    const auto code = codeIn(callback);
    if (!code) {
        require(code.error().kind != Kind::malformedResponse, "a callback is refused for what it is");
        return;
    }
    require(!code->empty(), "a code is never empty");
    require(callback.contains('?'), "a code comes from a query");
    require(isRefused("x" + callback, Kind::invalidCallback), "another scheme is another address");
    const auto mark = callback.find('?') + 1;
    const std::string before = callback.substr(0, mark);
    const std::string query = callback.substr(mark);
    require(isRefused(before + "state=X&" + query, Kind::stateMismatch), "the first state decides");
    require(isRefused(before + "state&" + query, Kind::stateMismatch), "a state without a value is none");
    require(isRefused(before + "error=access_denied&" + query, Kind::cancelled), "the first error decides");
    const auto end = std::min(callback.find('#'), callback.size());
    const auto longer = callback.substr(0, end) + "&state=X&code=Y&iss=Z&error=E" + callback.substr(end);
    // What the query does not hold yet is found in what was added.
    if (const auto again = codeIn(longer)) {
        require(*again == *code, "the first code decides");
    }
    if (const auto strict = codeIn(callback, true)) {
        require(*strict == *code, "a promise of the issuer changes no code");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const char* data, std::size_t size)
{
    const std::string text{data, size};
    checkAnyText(text);
    checkAnyText(address + "?" + text);
    checkAnyText(address + "?state=S&" + text);
    return 0;
}
