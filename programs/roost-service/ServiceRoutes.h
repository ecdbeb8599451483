#pragma once

#include "programs/roost-service/AuthorizeRoutes.h"
#include "programs/roost-service/Endpoint.h"
#include "programs/roost-service/HttpValues.h"
#include "programs/roost-service/MetadataRoutes.h"
#include "programs/roost-service/PageRoutes.h"
#include "programs/roost-service/RegistrationRoutes.h"
#include "programs/roost-service/ServiceState.h"
#include "programs/roost-service/TokenRoutes.h"
#include "programs/roost-service/WidgetRoutes.h"

#include <optional>

namespace roost::local {

/// Sends each request of a client to the routes that answer it: counted first, then bent by the scenario that
/// is set for its endpoint and profile. Main thread; must outlive the replies it hands out.
class ServiceRoutes {
public:
    /// `base` is the origin of the service, without a slash at the end; `random` makes the secrets of pages.
    ServiceRoutes(ServiceState& state, AccessCheck check, RandomBytes random, const QByteArray& base);

    Reply reply(const Request& request);

private:
    static std::optional<Endpoint> endpointOf(const QByteArray& path);
    Answer answer(Endpoint endpoint, const Request& request, std::chrono::seconds clockOffset);

    ServiceState& state_;
    WidgetRoutes widget_;
    PageRoutes pages_;
    MetadataRoutes metadata_;
    RegistrationRoutes registration_;
    AuthorizeRoutes authorize_;
    TokenRoutes token_;
};

} // namespace roost::local
