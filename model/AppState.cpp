#include "model/AppState.h"

#include <algorithm>
#include <utility>

namespace roost {

namespace {

/// Whether `value` was another before.
template <class T, class U>
bool replace(T& value, U&& by)
{
    if (value == by) {
        return false;
    }
    value = std::forward<U>(by);
    return true;
}

} // namespace

void AppState::setAccounts(std::vector<RoostAccountRecord> accounts)
{
    if (replace(accounts_, std::move(accounts))) {
        Q_EMIT accountsChanged();
    }
}

void AppState::setAccount(RoostAccountRecord record)
{
    const auto place = std::ranges::find(accounts_, record.profileId, &RoostAccountRecord::profileId);
    if (place == accounts_.end()) {
        accounts_.push_back(std::move(record));
    } else if (!replace(*place, std::move(record))) {
        return;
    }
    Q_EMIT accountsChanged();
}

const RoostAccountRecord* AppState::account(const std::string& profileId) const
{
    const auto found = std::ranges::find(accounts_, profileId, &RoostAccountRecord::profileId);
    return found == accounts_.end() ? nullptr : &*found;
}

void AppState::setRefreshing(bool isRefreshing)
{
    if (replace(isRefreshing_, isRefreshing)) {
        Q_EMIT isRefreshingChanged();
    }
}

void AppState::setLastRefreshAt(std::optional<Date> at)
{
    if (replace(lastRefreshAt_, at)) {
        Q_EMIT lastRefreshAtChanged();
    }
}

void AppState::setSignInState(SignInState::Any state)
{
    if (replace(signInState_, std::move(state))) {
        Q_EMIT signInStateChanged();
    }
}

void AppState::setSelectedProfileID(std::optional<std::string> profileId)
{
    if (replace(selectedProfileID_, std::move(profileId))) {
        Q_EMIT selectedProfileIDChanged();
    }
}

void AppState::setLaunchAtLogin(bool launches)
{
    if (replace(launchAtLogin_, launches)) {
        Q_EMIT launchAtLoginChanged();
    }
}

void AppState::setLaunchNeedsApproval(bool needsApproval)
{
    if (replace(launchNeedsApproval_, needsApproval)) {
        Q_EMIT launchNeedsApprovalChanged();
    }
}

void AppState::setUpdateStatus(UpdateStatus status)
{
    if (replace(updateStatus_, std::move(status))) {
        Q_EMIT updateStatusChanged();
    }
}

} // namespace roost
