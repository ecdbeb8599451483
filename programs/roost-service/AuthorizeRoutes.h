#pragma once

#include "programs/roost-service/AuthorizeRequest.h"
#include "programs/roost-service/ConsentTickets.h"
#include "programs/roost-service/HttpValues.h"
#include "programs/roost-service/ServiceState.h"

namespace roost::local {

/// The authorization endpoint, RFC 6749 §3.1: asks the user, or decides at once where the consent is settled,
/// and sends the browser back with a code or an error. Main thread.
class AuthorizeRoutes {
public:
    /// `issuer` is the origin of the service, without a slash at the end; `random` makes the tickets.
    AuthorizeRoutes(ServiceState& state, RandomBytes random, QByteArray issuer);

    /// GET: 200 with the page, 303 back to the client, 400 with a page where there is no safe way back. POST,
    /// from the page: 303 back to the client, or 400 with a page. Otherwise 405.
    Answer answer(const Request& request);

private:
    Answer asked(const Request& request);
    Answer decided(const Request& request);
    Answer allowed(const AuthorizeRequest& request, const std::string& profile);
    Answer denied(const AuthorizeRequest& request);
    Answer sentBack(const ReturnAddress& back, HttpHeaders parameters);
    bool isFromElsewhere(const Request& request) const;
    std::string profileToAllow() const;

    ServiceState& state_;
    QByteArray issuer_;
    ConsentTickets tickets_;
};

} // namespace roost::local
