#include "programs/roost-service/ConsentTickets.h"

namespace roost::local {

namespace {

constexpr int ticketBytes = 32;
constexpr std::chrono::minutes lifetime{10};

} // namespace

QByteArray ConsentTickets::issue(AuthorizeRequest request)
{
    const Date now = clock_();
    std::erase_if(pending_, [&](const auto& entry) { return now >= entry.second.expiresAt; });
    QByteArray ticket = randomText(random_, ticketBytes);
    pending_.emplace(ticket, Pending{std::move(request), now + lifetime});
    return ticket;
}

std::optional<AuthorizeRequest> ConsentTickets::find(const QByteArray& ticket) const
{
    const auto found = pending_.find(ticket);
    return found == pending_.end() || clock_() >= found->second.expiresAt
               ? std::nullopt
               : std::optional(found->second.request);
}

} // namespace roost::local
