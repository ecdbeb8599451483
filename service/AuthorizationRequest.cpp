#include "service/AuthorizationRequest.h"

#include "service/QueryItems.h"

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

std::string_view withoutSlash(std::string_view issuer)
{
    return issuer.ends_with('/') ? issuer.substr(0, issuer.size() - 1) : issuer;
}

} // namespace

std::expected<std::string, RoostAuthError> authorizationCode(std::string_view callback,
                                                             const AuthorizationRequest& request)
{
    using Kind = RoostAuthError::Kind;
    const auto refused = [](Kind kind) { return std::unexpected(RoostAuthError{kind, 0, {}}); };

    if (!isSameAddress(strictly(callback), strictly(request.redirectURI))) {
        return refused(Kind::invalidCallback);
    }
    if (firstQueryItem(callback, "state") != request.state) {
        return refused(Kind::stateMismatch);
    }
    const auto issuer = firstQueryItem(callback, "iss");
    if (issuer ? withoutSlash(*issuer) != withoutSlash(request.endpoints.issuer.text())
               : request.endpoints.issuerInResponse) {
        return refused(Kind::issuerMismatch);
    }
    if (auto error = firstQueryItem(callback, "error")) {
        return *error == "access_denied" ? refused(Kind::cancelled)
                                         : std::unexpected(RoostAuthError::denied(*std::move(error)));
    }
    const auto code = firstQueryItem(callback, "code");
    if (!code || code->empty()) {
        return refused(Kind::invalidCallback);
    }
    return *code;
}

} // namespace roost
