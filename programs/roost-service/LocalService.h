#pragma once

#include "model/Clock.h"
#include "programs/roost-service/ControlRoutes.h"
#include "programs/roost-service/RandomBytes.h"
#include "programs/roost-service/RequestServer.h"
#include "programs/roost-service/ServiceOptions.h"
#include "programs/roost-service/ServiceRoutes.h"
#include "programs/roost-service/ServiceState.h"

#include <QString>

#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace roost::local {

/// The whole local service: two listening sockets on the loopback address and what answers on them. Works
/// while the event loop of its thread runs; main thread.
class LocalService {
public:
    LocalService(ServiceOptions options, Clock clock, RandomBytes random);
    ~LocalService();
    LocalService(const LocalService&) = delete;
    LocalService& operator=(const LocalService&) = delete;

    /// Begins to listen; called once. The error is one sentence.
    std::expected<void, QString> start();

    /// Origins of the service and of its control, "http://127.0.0.1:PORT"; of a service with a
    /// certificate, "https://localhost:PORT". Empty before `start`.
    const QByteArray& base() const { return base_; }
    const QByteArray& control() const { return control_; }

    /// The bearer token of a profile that never expires; empty for an unknown profile.
    std::string standingToken(const std::string& profile) const;

    /// Ends all grants, or those of one profile.
    void revokeAll() { state_.authorization.revokeAll(); }
    void revoke(const std::string& profile) { state_.authorization.revoke(profile); }
    /// Makes every client id unknown, and ends the grants.
    void forgetClients() { state_.authorization.forgetClients(); }
    /// Ends every access token that is out now; refresh tokens stay good. And the other way round.
    void expireAccessTokens() { state_.authorization.expireAccessTokens(); }
    void expireRefreshTokens() { state_.authorization.expireRefreshTokens(); }
    /// Who decides about authorization requests from now on.
    void setConsent(Consent consent) { state_.consent = std::move(consent); }

    /// `watcher` is told every request to the service as it came in, secrets and all, before it is answered.
    /// For tests in this process.
    void watch(std::function<void(const Request&)> watcher) { watcher_ = std::move(watcher); }

    /// What the program prints when it is ready: one line of JSON without its end.
    QByteArray readyLine() const;

    /// Scenarios, faults, counters, lifetimes and time, for tests in this process. Valid as long as this is.
    ServiceState& state() { return state_; }

private:
    std::optional<Access> accessOf(const std::string& token) const;

    ServiceOptions options_;
    RandomBytes random_;
    ServiceState state_;
    std::unique_ptr<ServiceRoutes> routes_;
    ControlRoutes controlRoutes_;
    QByteArray base_;
    QByteArray control_;
    std::function<void(const Request&)> watcher_ = [](const Request&) {};
    // Last, so that connections end before what answers them.
    RequestServer server_;
    RequestServer controlServer_;
};

} // namespace roost::local
