#include "service/AuthorizationRequest.h"

#include "service/FormEncoding.h"

#include <QUrl>

namespace roost {

namespace {

QUrl strictly(std::string_view text)
{
    return QUrl{QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())), QUrl::StrictMode};
}

bool isSameAddress(const QUrl& a, const QUrl& b)
{
    // QUrl gives schemes and hosts in lower case.
    return a.isValid() && b.isValid() && a.scheme() == b.scheme() && a.host() == b.host() &&
           a.path(QUrl::FullyEncoded) == b.path(QUrl::FullyEncoded);
}

/// What stands between "?" and "#", byte for byte; nothing without a "?".
std::optional<std::string_view> queryOf(std::string_view address)
{
    address = address.substr(0, address.find('#'));
    const auto mark = address.find('?');
    return mark == std::string_view::npos ? std::nullopt : std::optional{address.substr(mark + 1)};
}

std::string_view withoutSlash(std::string_view issuer)
{
    return issuer.ends_with('/') ? issuer.substr(0, issuer.size() - 1) : issuer;
}

} // namespace

std::expected<std::string, RoostAuthError> authorizationCode(std::string_view callback,
                                                             const AuthorizationRequest& request)
{
    using FormEncoding::firstValue;
    using Kind = RoostAuthError::Kind;
    const auto refused = [](Kind kind) { return std::unexpected(RoostAuthError{kind, 0, {}}); };

    if (!isSameAddress(strictly(callback), strictly(request.redirectURI))) {
        return refused(Kind::invalidCallback);
    }
    const auto query = queryOf(callback);
    if (!query || firstValue(*query, "state") != request.state) {
        return refused(Kind::stateMismatch);
    }
    const auto issuer = firstValue(*query, "iss");
    if (issuer ? withoutSlash(*issuer) != withoutSlash(request.endpoints.issuer.text())
               : request.endpoints.issuerInResponse) {
        return refused(Kind::issuerMismatch);
    }
    if (auto error = firstValue(*query, "error")) {
        return *error == "access_denied" ? refused(Kind::cancelled)
                                         : std::unexpected(RoostAuthError::denied(*std::move(error)));
    }
    const auto code = firstValue(*query, "code");
    if (!code || code->empty()) {
        return refused(Kind::invalidCallback);
    }
    return *code;
}

} // namespace roost
