#include "service/SecureURL.h"

#include <QString>

#include <algorithm>
#include <array>

namespace roost {

namespace {

/// The host of an address that `WebURL` accepts, as it is written (RFC 3986 §3.2.2), in lower case. `QUrl`
/// would turn "127.1" and "%6cocalhost" into names of this machine.
std::string writtenHost(std::string_view text)
{
    std::string_view authority = text.substr(text.find("//") + 2);
    authority = authority.substr(0, authority.find_first_of("/?#"));
    authority.remove_prefix(authority.rfind('@') + 1);
    const auto bracket = authority.rfind(']');
    const auto colon = authority.find(':', bracket == std::string_view::npos ? 0 : bracket);
    const QByteArray host{authority.data(), static_cast<qsizetype>(std::min(colon, authority.size()))};
    return host.toLower().toStdString();
}

bool isThisMachine(std::string_view host)
{
    constexpr std::array<std::string_view, 3> names{"localhost", "127.0.0.1", "[::1]"};
    return std::ranges::find(names, host) != names.end();
}

} // namespace

std::expected<WebURL, RoostAuthError> secureURL(std::string_view text)
{
    if (const auto url = WebURL::parse(text)) {
        if (url->url().scheme() == QLatin1String("https") || isThisMachine(writtenHost(text))) {
            return *url;
        }
    }
    return std::unexpected(RoostAuthError::insecureEndpoint(std::string{text}));
}

bool sameOrigin(const QUrl& a, const QUrl& b)
{
    return a.scheme().toLower() == b.scheme().toLower() && a.host().toLower() == b.host().toLower() &&
           a.port(0) == b.port(0);
}

} // namespace roost
