#pragma once

#include "model/RoostStoreFile.h"
#include "model/SignInState.h"
#include "model/UpdateStatus.h"

#include <QObject>

#include <optional>
#include <string>
#include <vector>

namespace roost {

/// What the app publishes: everything that is shown of it. Each property has a signal that comes after a
/// change, and after changes only. Owned by the app's model, or by what stands for it in another process; its
/// owner writes it and all others read. Main thread.
class AppState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(std::vector<roost::RoostAccountRecord> accounts READ accounts NOTIFY accountsChanged)
    Q_PROPERTY(bool isRefreshing READ isRefreshing NOTIFY isRefreshingChanged)
    Q_PROPERTY(std::optional<roost::Date> lastRefreshAt READ lastRefreshAt NOTIFY lastRefreshAtChanged)
    Q_PROPERTY(roost::SignInState::Any signInState READ signInState NOTIFY signInStateChanged)
    Q_PROPERTY(
        std::optional<std::string> selectedProfileID READ selectedProfileID NOTIFY selectedProfileIDChanged)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin NOTIFY launchAtLoginChanged)
    Q_PROPERTY(bool launchNeedsApproval READ launchNeedsApproval NOTIFY launchNeedsApprovalChanged)
    Q_PROPERTY(roost::UpdateStatus updateStatus READ updateStatus NOTIFY updateStatusChanged)

public:
    /// Every profile that signed in and was not signed out by the user, in the order of signing in.
    const std::vector<RoostAccountRecord>& accounts() const { return accounts_; }
    /// Whether a refresh cycle is running.
    bool isRefreshing() const { return isRefreshing_; }
    /// When a cycle last brought fresh numbers of any profile.
    std::optional<Date> lastRefreshAt() const { return lastRefreshAt_; }
    const SignInState::Any& signInState() const { return signInState_; }
    /// The profile that the user chose; may be none of the accounts.
    const std::optional<std::string>& selectedProfileID() const { return selectedProfileID_; }
    /// Whether the desktop opens the app when the user logs in.
    bool launchAtLogin() const { return launchAtLogin_; }
    /// Whether it would, had the user not switched that off in the desktop.
    bool launchNeedsApproval() const { return launchNeedsApproval_; }
    const UpdateStatus& updateStatus() const { return updateStatus_; }

    void setAccounts(std::vector<RoostAccountRecord> accounts);
    /// Puts `record` in place of the one with its profile id, or at the end.
    void setAccount(RoostAccountRecord record);
    /// The record with that id; null when there is none. Valid until the accounts change.
    const RoostAccountRecord* account(const std::string& profileId) const;
    void setRefreshing(bool isRefreshing);
    void setLastRefreshAt(std::optional<Date> at);
    void setSignInState(SignInState::Any state);
    void setSelectedProfileID(std::optional<std::string> profileId);
    void setLaunchAtLogin(bool launches);
    void setLaunchNeedsApproval(bool needsApproval);
    void setUpdateStatus(UpdateStatus status);

Q_SIGNALS:
    void accountsChanged();
    void isRefreshingChanged();
    void lastRefreshAtChanged();
    void signInStateChanged();
    void selectedProfileIDChanged();
    void launchAtLoginChanged();
    void launchNeedsApprovalChanged();
    void updateStatusChanged();

private:
    std::vector<RoostAccountRecord> accounts_;
    bool isRefreshing_ = false;
    std::optional<Date> lastRefreshAt_;
    SignInState::Any signInState_;
    std::optional<std::string> selectedProfileID_;
    bool launchAtLogin_ = false;
    bool launchNeedsApproval_ = false;
    UpdateStatus updateStatus_;
};

} // namespace roost
