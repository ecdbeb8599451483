#pragma once

#include "model/WebURL.h"
#include "service/RoostAuthError.h"

#include <QCoro/QCoroTask>
#include <QString>

#include <expected>
#include <stop_token>
#include <string>

namespace roost {

/// The browser step of signing in. Main thread; outlives its tasks.
class WebAuthenticating {
public:
    virtual ~WebAuthenticating() = default;

    /// Shows `url` to the user and gives the callback, an address of the scheme `callbackScheme`, as it was
    /// received. Everything else, a stop too, ends as `cancelled`.
    virtual QCoro::Task<std::expected<std::string, RoostAuthError>>
    authenticate(WebURL url, QString callbackScheme, std::stop_token stop) = 0;
};

} // namespace roost
