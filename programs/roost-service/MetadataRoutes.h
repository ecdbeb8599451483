#pragma once

#include "programs/roost-service/HttpValues.h"
#include "programs/roost-service/ServiceState.h"

namespace roost::local {

/// What the authorization server and the resource tell about themselves: RFC 8414 and RFC 9728. Main thread.
class MetadataRoutes {
public:
    /// `issuer` is the origin of the service, without a slash at the end.
    MetadataRoutes(ServiceState& state, QByteArray issuer) : state_(state), issuer_(std::move(issuer)) {}

    /// 200 with the document as the faults in force bend it, 405 unless the method is GET.
    Answer ofServer(const Request& request) const;
    /// The same; 404 while that fault is in force.
    Answer ofResource(const Request& request) const;

private:
    QString address(const char* path) const;

    ServiceState& state_;
    QByteArray issuer_;
};

} // namespace roost::local
