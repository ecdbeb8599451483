#include "fuzz/Require.h"
#include "service/OAuthAnswers.h"
#include "service/OAuthRequests.h"
#include "service/SecureURL.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <string>

namespace {

using namespace roost;
using fuzz::require;

const QUrl base{QStringLiteral("https://roost.example")};

bool isSecure(const WebURL& url)
{
    const QUrl parsed = url.url();
    return parsed.scheme() == QLatin1String("https") || parsed.host() == QLatin1String("localhost") ||
           parsed.host() == QLatin1String("127.0.0.1") || parsed.host() == QLatin1String("::1");
}

void checkEndpoints(const OAuthEndpoints& endpoints, const std::string& document)
{
    // Of a key given twice the last counts, here as there.
    const auto json = nlohmann::json::parse(document, nullptr, false);
    require(json.is_object(), "metadata are an object");
    require(std::ranges::find(json.at("code_challenge_methods_supported"), "S256") !=
                json.at("code_challenge_methods_supported").end(),
            "the server offers S256");
    require(json.at("issuer") == endpoints.issuer.text(), "the issuer keeps its text");
    require(json.at("token_endpoint") == endpoints.tokenEndpoint.text(), "an endpoint keeps its text");
    require(sameOrigin(endpoints.issuer.url(), base), "the issuer is the service");
    for (const WebURL& url : {endpoints.issuer, endpoints.authorizationEndpoint, endpoints.tokenEndpoint,
                              endpoints.registrationEndpoint}) {
        require(isSecure(url), "no endpoint is insecure");
    }
    require(endpoints.resource.ends_with("/mcp"), "there is a resource");
    const std::string& text = endpoints.authorizationEndpoint.text();
    if (const auto request = OAuthRequests::authorization(endpoints, "c", "v", "s")) {
        require(request->url.text().starts_with(text.substr(0, text.find('#'))),
                "the endpoint stays as it is in what the browser opens");
        require(request->url.url().host() == endpoints.authorizationEndpoint.url().host(),
                "the browser goes to the endpoint's host");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const char* data, std::size_t size)
{
    const std::string document{data, size};
    if (const auto endpoints = OAuthAnswers::endpoints({200, document}, base)) {
        checkEndpoints(*endpoints, document);
    }
    require(!OAuthAnswers::endpoints({404, document}, base), "metadata come with status 200");
    static_cast<void>(OAuthAnswers::resource({200, document}));
    static_cast<void>(secureURL(document));
    return 0;
}
