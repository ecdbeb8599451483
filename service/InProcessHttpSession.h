#pragma once

#include "service/HttpSession.h"

#include <functional>

namespace roost {

/// An `HttpSession` without a network: a function answers. For simulations and tests. Records nothing.
class InProcessHttpSession final : public HttpSession {
public:
    /// Answers one request; called on the main thread, once per request. It may answer at once or after any
    /// number of turns of the event loop, and ends early when asked to stop. The time-out is not watched
    /// here: a handler that wants one to pass answers with the failure.
    using Handler = std::function<QCoro::Task<HttpResult>(HttpRequest, std::stop_token)>;

    explicit InProcessHttpSession(Handler handler);

    /// Holds the handler's answer to the terms of `HttpSession`: a request that was stopped, before or
    /// meanwhile, comes back as cancelled; a body that was not asked for is dropped, one over the limit is
    /// `bodyTooLarge`.
    QCoro::Task<HttpResult> send(HttpRequest request, std::stop_token stop) override;

private:
    Handler handler_;
};

} // namespace roost
