#pragma once

#include "programs/roost-service/HttpValues.h"
#include "programs/roost-service/ServiceState.h"

namespace roost::local {

/// Dynamic registration of public clients, RFC 7591. Main thread.
class RegistrationRoutes {
public:
    explicit RegistrationRoutes(ServiceState& state) : state_(state) {}

    /// 201 with the client's id and what it registered, 400 with "invalid_redirect_uri" or
    /// "invalid_client_metadata", 405 unless the method is POST.
    Answer answer(const Request& request) const;

private:
    ServiceState& state_;
};

} // namespace roost::local
