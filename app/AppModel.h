#pragma once

#include "app/Accounts.h"
#include "app/Announcements.h"
#include "app/LoginItem.h"
#include "app/RefreshLoop.h"
#include "app/SignIn.h"
#include "app/SystemEvents.h"
#include "app/WidgetTimelines.h"
#include "model/AppState.h"
#include "model/BootTime.h"
#include "model/Clock.h"
#include "model/Pause.h"
#include "model/Settings.h"
#include "model/WebURL.h"
#include "model/WidgetStore.h"
#include "present/RoostWidgetModel.h"
#include "service/AccountSync.h"
#include "update/UpdateControl.h"

#include <QCoro/QCoroTask>
#include <QUrl>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace roost {

/// The one coordinator of the app: owns its state, the profiles and the refresh loop, and does what the user
/// asks. Made by `main`, which awaits `quit` before it goes. Main thread.
class AppModel {
public:
    /// What it is made of. References outlive it and its tasks.
    struct Parts {
        WidgetStore store;
        QUrl baseURL;
        SecretStore& secrets;
        OAuthClient oauth;
        WidgetAPI api;
        RefreshLock& lock;
        NotificationPlanner planner;
        AnnouncedLedgerStore ledgerStore;
        WebAuthenticating& browser;
        std::function<std::unique_ptr<NotificationService>()> notifications;
        Settings& settings;
        SystemEvents& events;
        WidgetTimelines& widgets;
        /// Null where the desktop starts nothing.
        LoginItem* loginItem = nullptr;
        /// Shows a web address to the user.
        std::function<void(WebURL)> open;
        Clock now;
        BootTime bootTime;
        /// Goes on while the machine sleeps.
        Pause pause;
        PKCE::RandomBytes randomBytes;
        /// How the user wants numbers and words at the moment.
        std::function<RoostFormat()> format;
        /// From one refresh to the next.
        std::chrono::seconds interval = RefreshLoop::interval;
    };

    explicit AppModel(Parts parts);
    ~AppModel();
    AppModel(const AppModel&) = delete;
    AppModel& operator=(const AppModel&) = delete;

    const AppState& state() const { return state_; }

    /// Which service it reads, and the folder that it shares with widgets.
    const QUrl& baseURL() const { return parts_.baseURL; }
    const std::filesystem::path& sharedFolder() const { return parts_.store.directory(); }

    /// How long a secret store that could not say who is signed in is left alone, unless it says itself that
    /// something has changed.
    static constexpr std::chrono::seconds keyringPatience{60};

    /// Loads the profiles, listens to the system and begins to refresh. The records of the shared file are
    /// published at once; the rest follows when the secret store has answered, which is asked until it does,
    /// also where nobody is known who could be refreshed. Does nothing when called again. Ends when the first
    /// cycle has begun.
    QCoro::Task<void> start();

    /// Asks for fresh numbers soon; how soon is `RefreshLoop::requestRefresh`'s to say. Nothing before
    /// `start`.
    void requestRefresh();

    /// The same; ends when the numbers are as fresh as that makes them.
    QCoro::Task<void> refreshed();

    /// Asks for them when a widget has left a request in the shared folder that was not seen yet.
    void noticeRefreshNote();

    /// Signs a profile in through the browser. What comes of it is published; a second call meanwhile does
    /// nothing, nor does one after `quit`. The profile that signed in here; nothing when none did.
    QCoro::Task<std::optional<std::string>> signIn();

    /// Gives the running sign-in up, as if the browser had been closed.
    void cancelSignIn() { signIn_.cancel(); }

    /// What the running sign-in opens in the browser; `SignInBrowser::address` tells more.
    QCoro::Task<std::optional<std::string>> signInAddress() { return tasks_.add(signInBrowser_.address()); }

    /// Forgets the profile here. Cannot fail.
    QCoro::Task<void> signOut(std::string profileId);

    /// Has the profile shown, and remembers that; nothing for none.
    void select(std::optional<std::string> profileId);

    /// Has the desktop open the app at login, or no longer. What comes of it is published; a failure is
    /// logged.
    void setLaunchAtLogin(bool enabled);

    /// Publishes whether the desktop opens the app at login: the user can change that there, and nobody
    /// tells.
    void checkLaunchAtLogin();

    /// Opens the web app in the browser: the page of the selected profile where it has one.
    void openRoost();

    /// What updates are asked of from now on; outlives this.
    void setUpdater(UpdateControl& updater) { updater_ = &updater; }
    UpdateControl& updater() { return *updater_; }
    void setUpdateStatus(UpdateStatus status) { state_.setUpdateStatus(std::move(status)); }

    /// The record to show: the selected one, otherwise the first that is signed in, otherwise the first. Null
    /// without any. Valid until the accounts change.
    const RoostAccountRecord* selected() const;

    /// Whether any profile is signed in.
    bool isSignedIn() const;

    /// What a widget would show at that time.
    RoostWidgetModel::Content content(Date at) const;

    /// Ends everything that is under way; ends when it is. A token that is being fetched is waited for and
    /// stored, which takes no longer than a request and some calls of the keyring. What could not be written
    /// is tried once more.
    QCoro::Task<void> quit();

private:
    QCoro::Task<void> begin();
    QCoro::Task<void> awaitKeyring();
    void noticeKeyring();
    QCoro::Task<void> askKeyring();
    QCoro::Task<RefreshLoop::Outcomes> sync(std::stop_token stop);
    QCoro::Task<std::optional<std::string>> signInAndSelect();
    void noticeRequest(Date at);
    bool isNew(Date request) const;
    void applyLoginDefaultOnce();

    Parts parts_;
    AppState state_;
    Announcements announcements_;
    Accounts accounts_;
    SignInBrowser signInBrowser_;
    SignIn signIn_;
    std::shared_ptr<RefreshLoop> loop_;
    NoUpdates noUpdates_;
    UpdateControl* updater_ = &noUpdates_;
    TaskGroup tasks_;
    std::stop_source quitting_;
    bool isStarted_ = false;
    bool isAskingKeyring_ = false;
    bool isKeyringNew_ = false;
    std::unique_ptr<FolderWatcher> folderWatcher_;
    /// The newest request for a refresh that was acted on.
    Date handledMarker_ = Date::min();
};

} // namespace roost
