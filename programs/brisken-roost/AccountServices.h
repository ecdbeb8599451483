#pragma once

#include "programs/brisken-roost/AccountFile.h"
#include "programs/brisken-roost/CommandResult.h"
#include "service/AccountSession.h"
#include "service/OAuthClient.h"
#include "service/RefreshLock.h"
#include "service/SecretStore.h"
#include "service/WidgetAPI.h"

#include <QCoro/QCoroTask>

#include <expected>
#include <memory>
#include <string>
#include <vector>

namespace roost {

/// What the commands about profiles work with. All of it outlives their tasks.
struct AccountServices {
    OAuthClient& oauth;
    WidgetAPI api;
    SecretStore& secrets;
    RefreshLock& lock;
    AccountFile file;
    Clock now;

    std::shared_ptr<AccountSession> session(const std::string& profileId) const
    {
        return std::make_shared<AccountSession>(profileId, oauth, secrets, lock, now);
    }

    /// The ids of the profiles that are signed in, in their order: those that have a refresh token in the
    /// store. This outlives the task.
    QCoro::Task<std::expected<std::vector<std::string>, SecretsUnavailable>> signedInProfiles() const;
};

/// Says that no profile is signed in.
CommandResult nobodySignedIn();

/// Says that this one is not, and that there is no such profile at all.
CommandResult notSignedIn(const std::string& profileId);
CommandResult noSuchProfile(const std::string& profileId);

/// Why the store cannot be used and what to do about it, in one sentence or two.
std::string sentenceFor(SecretsUnavailable unavailable);

} // namespace roost
