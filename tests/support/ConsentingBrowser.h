#pragma once

#include "service/HttpSession.h"
#include "service/WebAuthenticating.h"

namespace roost::test {

/// A browser without a user: asks for the address and brings back where the service redirects to, for a
/// service that consents by itself.
class ConsentingBrowser final : public WebAuthenticating {
public:
    explicit ConsentingBrowser(HttpSession& session) : session_(session) {}

    QCoro::Task<std::expected<std::string, RoostAuthError>> authenticate(WebURL url, QString,
                                                                         std::stop_token stop) override
    {
        HttpRequest request;
        request.url = url.url();
        auto asking = session_.send(std::move(request), std::move(stop));
        const HttpResult answer = co_await asking;
        const auto location = answer ? answer->header("Location") : std::nullopt;
        if (!location) {
            co_return std::unexpected(RoostAuthError{RoostAuthError::Kind::cancelled, 0, {}});
        }
        co_return location->toStdString();
    }

private:
    HttpSession& session_;
};

} // namespace roost::test
