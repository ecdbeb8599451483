#pragma once

#include "programs/roost-service/HttpValues.h"
#include "programs/roost-service/ServiceState.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace roost::local {

/// What a bearer token allows.
struct Access {
    std::string profile;
    /// Whether it covers "metrics:read".
    bool readsMetrics = false;
};

/// What `token` allows; nothing when it is unknown, expired or revoked.
using AccessCheck = std::function<std::optional<Access>(const std::string& token)>;

/// The widget endpoint: the snapshot of the profile that the bearer token belongs to. Main thread.
class WidgetRoutes {
public:
    /// `resourceMetadata` is the address told to clients that come without a valid token (RFC 9728 §5.1).
    WidgetRoutes(ServiceState& state, AccessCheck check, QByteArray resourceMetadata);

    /// Whose token the request carries; nothing without a valid one.
    std::optional<std::string> profileOf(const Request& request) const;

    /// 200 with the snapshot, 401 without a valid token, 403 when the token does not cover the numbers, 405
    /// unless the method is GET. The profile's time is wrong by `clockOffset`.
    Answer answer(const Request& request, std::chrono::seconds clockOffset) const;

private:
    std::optional<Access> accessOf(const Request& request) const;

    ServiceState& state_;
    AccessCheck check_;
    QByteArray resourceMetadata_;
};

/// The token in the only "Authorization" header, RFC 6750 §2.1: the scheme in any case, exactly one blank, a
/// token of the characters that are allowed there. Nothing otherwise.
std::optional<std::string> bearerToken(const Request& request);

} // namespace roost::local
