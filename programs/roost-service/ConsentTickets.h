#pragma once

#include "model/Clock.h"
#include "programs/roost-service/AuthorizeRequest.h"
#include "programs/roost-service/RandomBytes.h"

#include <map>
#include <optional>

namespace roost::local {

/// The requests that users are being asked about. The page of each carries a secret ticket, so that a
/// decision can only come from that page, once and while it is fresh. Main thread.
class ConsentTickets {
public:
    ConsentTickets(Clock clock, RandomBytes random) : clock_(std::move(clock)), random_(std::move(random)) {}

    /// The ticket for a page about `request`.
    QByteArray issue(AuthorizeRequest request);

    /// The request of a ticket that is still good; it stays so.
    std::optional<AuthorizeRequest> find(const QByteArray& ticket) const;

    void spend(const QByteArray& ticket) { pending_.erase(ticket); }

private:
    struct Pending {
        AuthorizeRequest request;
        Date expiresAt;
    };

    Clock clock_;
    RandomBytes random_;
    std::map<QByteArray, Pending> pending_;
};

} // namespace roost::local
