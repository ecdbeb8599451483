#include "programs/roost-service/ServiceRoutes.h"

#include "programs/roost-service/OAuthPaths.h"
#include "programs/roost-service/ScenarioReply.h"

#include <QDateTime>
#include <QLocale>

#include <array>

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

ServiceRoutes::ServiceRoutes(ServiceState& state, AccessCheck check, RandomBytes random,
                             const QByteArray& base)
    : state_(state),
      widget_(state, std::move(check), base + resourcePath),
      pages_(state),
      metadata_(state, base),
      registration_(state),
      authorize_(state, std::move(random), base),
      token_(state)
{
}

std::optional<Endpoint> ServiceRoutes::endpointOf(const QByteArray& path)
{
    constexpr std::array<std::pair<const char*, Endpoint>, 6> known{{
        {"/api/roost/v1/widget", Endpoint::widget},
        {metadataPath, Endpoint::metadata},
        {resourcePath, Endpoint::resource},
        {registrationPath, Endpoint::registration},
        {authorizePath, Endpoint::authorize},
        {tokenPath, Endpoint::token},
    }};
    for (const auto& [knownPath, endpoint] : known) {
        if (path == knownPath) {
            return endpoint;
        }
    }
    return PageRoutes::owns(path) ? std::optional(Endpoint::page) : std::nullopt;
}

Reply ServiceRoutes::reply(const Request& request)
{
    const std::optional<Endpoint> endpoint = endpointOf(request.path);
    if (!endpoint) {
        return {notFound, {}, nullptr};
    }
    std::optional<std::string> profile;
    std::shared_ptr<void> underWay;
    if (*endpoint == Endpoint::widget) {
        profile = widget_.profileOf(request);
    } else if (const auto owner = *endpoint == Endpoint::token ? token_.ownerOf(request) : std::nullopt) {
        profile = owner->profile;
        underWay = state_.counters.tokenRequestUnderWay(owner->grant);
    }
    state_.counters.arrived(*endpoint, profile, request);
    Reply reply =
        scenarioReply(state_.scenarios.take(profile, *endpoint),
                      [this, endpoint = *endpoint, request](std::chrono::seconds clockOffset) {
                          Answer answer = this->answer(endpoint, request, clockOffset);
                          answer.headers.emplace_back("Date", httpDate(state_.clock() + clockOffset));
                          return answer;
                      });
    reply.whileInFlight = std::move(underWay);
    return reply;
}

Answer ServiceRoutes::answer(Endpoint endpoint, const Request& request, std::chrono::seconds clockOffset)
{
    switch (endpoint) {
    case Endpoint::widget:
        return widget_.answer(request, clockOffset);
    case Endpoint::page:
        return pages_.answer(request);
    case Endpoint::metadata:
        return metadata_.ofServer(request);
    case Endpoint::resource:
        return metadata_.ofResource(request);
    case Endpoint::registration:
        return registration_.answer(request);
    case Endpoint::authorize:
        return authorize_.answer(request);
    case Endpoint::token:
        return token_.answer(request);
    }
    return notFound();
}

} // namespace roost::local
