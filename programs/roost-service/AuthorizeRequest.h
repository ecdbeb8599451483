#pragma once

#include "programs/roost-service/AuthorizationServer.h"

#include <QString>

#include <variant>

namespace roost::local {

/// Where the answer to an authorization request goes.
struct ReturnAddress {
    QByteArray redirectUri;
    /// As the client sent it; nothing when it sent none.
    std::optional<QByteArray> state;
};

/// A request that the user can be asked about.
struct AuthorizeRequest {
    CodeTerms terms;
    ReturnAddress back;
    QByteArray clientName;
};

/// A request from nobody in particular, or with a way back that is not the client's own: the user is told,
/// and nothing is sent anywhere (RFC 6749 §4.1.2.1).
struct UntrustedRequest {
    QString sentence;
};

/// A fault of a known client, which is told of it.
struct FaultyRequest {
    ReturnAddress back;
    QByteArray error;
    /// Printable ASCII.
    QByteArray description;
};

using ReadRequest = std::variant<AuthorizeRequest, UntrustedRequest, FaultyRequest>;

/// Reads the query of an authorization request. Client and redirect URI are looked at before anything else.
/// PKCE with "S256" is asked of every client; `resource` is the only one there is, which a request may leave
/// out.
ReadRequest readAuthorizeRequest(const QByteArray& query, const AuthorizationServer& server,
                                 const QByteArray& resource);

} // namespace roost::local
