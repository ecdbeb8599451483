#include "programs/roost-service/ServiceRoutes.h"

#include "programs/roost-service/ScenarioReply.h"

#include <QDateTime>
#include <QLocale>

namespace roost::local {

namespace {

/// RFC 9110 §5.6.7.
QByteArray httpDate(Date date)
{
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(date.time_since_epoch().count(), Qt::UTC);
    return QLocale::c().toString(time, QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'")).toLatin1();
}

Answer notFound() { return textAnswer("There is nothing here.\n", "text/plain", 404); }

} // namespace

ServiceRoutes::ServiceRoutes(ServiceState& state, AccessCheck check, const QByteArray& base)
    : state_(state),
      widget_(state, std::move(check), base + "/.well-known/oauth-protected-resource"),
      pages_(state)
{
}

std::optional<Endpoint> ServiceRoutes::endpointOf(const QByteArray& path)
{
    if (path == "/api/roost/v1/widget") {
        return Endpoint::widget;
    }
    if (PageRoutes::owns(path)) {
        return Endpoint::page;
    }
    return std::nullopt;
}

std::optional<std::string> ServiceRoutes::profileOf(Endpoint endpoint, const Request& request) const
{
    return endpoint == Endpoint::widget ? widget_.profileOf(request) : std::nullopt;
}

Reply ServiceRoutes::reply(const Request& request)
{
    const std::optional<Endpoint> endpoint = endpointOf(request.path);
    if (!endpoint) {
        return {notFound, {}, nullptr};
    }
    const std::optional<std::string> profile = profileOf(*endpoint, request);
    state_.counters.arrived(*endpoint, profile, request);
    return scenarioReply(state_.scenarios.take(profile, *endpoint),
                         [this, endpoint = *endpoint, request](std::chrono::seconds clockOffset) {
                             Answer answer = this->answer(endpoint, request, clockOffset);
                             answer.headers.emplace_back("Date", httpDate(state_.clock() + clockOffset));
                             return answer;
                         });
}

Answer ServiceRoutes::answer(Endpoint endpoint, const Request& request, std::chrono::seconds clockOffset)
{
    switch (endpoint) {
    case Endpoint::widget:
        return widget_.answer(request, clockOffset);
    case Endpoint::page:
        return pages_.answer(request);
    default:
        return notFound();
    }
}

} // namespace roost::local
