#pragma once

#include "model/SyncOutcome.h"
#include "service/AccountSession.h"
#include "service/WidgetAPI.h"

#include <QCoro/QCoroTask>

#include <memory>
#include <stop_token>

namespace roost {

/// One refresh of one signed-in profile: a token from its session, a snapshot from the service, one recovery
/// from a refused token, and everything that can happen as one outcome. An immutable value that may go before
/// its tasks end; main thread; several profiles may sync at once.
class AccountSync {
public:
    explicit AccountSync(WidgetAPI api) : api_(std::move(api)) {}

    /// Never fails otherwise than by its outcome. Only a definite verdict ends the sign-in: the authorization
    /// server no longer takes the refresh token or the client, the service refuses a fresh token (401 twice)
    /// or the profile (403). A stop comes back as failed, unreachable; so does the refusal of a token whose
    /// sign-in has been replaced by a newer one meanwhile.
    QCoro::Task<SyncOutcome::Any> fetch(std::shared_ptr<AccountSession> session, std::stop_token stop) const;

private:
    WidgetAPI api_;
};

} // namespace roost
