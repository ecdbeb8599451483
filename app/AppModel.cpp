#include "app/AppModel.h"

#include "app/AppSettings.h"
#include "app/LaunchAtLogin.h"
#include "model/OverviewPage.h"
#include "model/RefreshSignal.h"
#include "model/RoostLog.h"
#include "present/RoostL10n.h"
#include "present/RoostTimeline.h"

#include <algorithm>
#include <utility>

namespace roost {

namespace {

using Status = RoostAccountRecord::Status;

} // namespace

AppModel::AppModel(Parts parts)
    : parts_{std::move(parts)},
      announcements_{{parts_.planner, parts_.ledgerStore, parts_.notifications, parts_.format, parts_.baseURL,
                      parts_.now}},
      accounts_{state_,
                announcements_,
                {parts_.store, parts_.secrets, parts_.oauth, parts_.lock, parts_.widgets, parts_.now,
                 [this] { return RoostL10n::bundle(parts_.format().locale()).text("Profile"); }}},
      signInBrowser_{parts_.browser},
      signIn_{state_,
              accounts_,
              {SignInFlow{parts_.oauth, parts_.api, signInBrowser_, parts_.randomBytes, parts_.pause},
               signInBrowser_, parts_.oauth, parts_.secrets, [this] { return parts_.format().locale(); }}},
      loop_{std::make_shared<RefreshLoop>(
          state_, RefreshLoop::Parts{[this](std::stop_token stop) { return sync(std::move(stop)); },
                                     [this] { accounts_.persist(Accounts::Reload::yes); }, parts_.now,
                                     parts_.bootTime, parts_.pause, parts_.interval})}
{
}

AppModel::~AppModel() = default;

QCoro::Task<void> AppModel::start() { return tasks_.add(begin()); }

QCoro::Task<void> AppModel::begin()
{
    if (std::exchange(isStarted_, true)) {
        co_return;
    }
    AppSettings::registerDefaults(parts_.settings);
    state_.setSelectedProfileID(parts_.settings.text(AppSettings::selectedProfileId));
    checkLaunchAtLogin();
    // What was asked for before the numbers were written has been done.
    handledMarker_ = accounts_.loadRecords().value_or(Date::min());
    auto loading = accounts_.loadSignedIn();
    co_await loading;
    if (quitting_.stop_requested()) {
        co_return;
    }
    parts_.events.observe({.woke = [this] { requestRefresh(); },
                           .refreshRequested = [this](Date at) { noticeRequest(at); },
                           .secretsChanged = [this] { noticeKeyring(); }});
    tasks_.add(awaitKeyring());
    // The loop's first cycle, which begins now, is what a widget waits for.
    if (const std::optional<Date> asked = RefreshSignal::lastRequest(parts_.store); asked && isNew(*asked)) {
        handledMarker_ = *asked;
    }
    loop_->startLoop();
    folderWatcher_ = parts_.events.watch(parts_.store.directory(), [this] { noticeRefreshNote(); });
    // What came before the folder was watched has not been told.
    noticeRefreshNote();
}

void AppModel::requestRefresh() { loop_->requestRefresh(); }

QCoro::Task<void> AppModel::refreshed() { return tasks_.add(loop_->refreshed()); }

void AppModel::noticeRefreshNote()
{
    if (const std::optional<Date> asked = RefreshSignal::lastRequest(parts_.store)) {
        noticeRequest(*asked);
    }
}

/// The folder and the notification both tell of one request: whichever comes first counts.
void AppModel::noticeRequest(Date at)
{
    if (isNew(at)) {
        handledMarker_ = at;
        requestRefresh();
    }
}

/// A handled request that lies in the future was made before the clock was set back, and says nothing about
/// those that are made now.
bool AppModel::isNew(Date request) const
{
    return request > handledMarker_ || (handledMarker_ > parts_.now() && request != handledMarker_);
}

QCoro::Task<RefreshLoop::Outcomes> AppModel::sync(std::stop_token stop)
{
    auto loading = accounts_.loadSignedIn();
    co_await loading;
    auto forgetting = accounts_.forgetAtLast();
    co_await forgetting;
    std::vector<std::string> signedIn;
    for (const RoostAccountRecord& record : state_.accounts()) {
        if (record.status == Status::ok) {
            signedIn.push_back(record.profileId);
        }
    }
    const AccountSync sync{parts_.api};
    RefreshLoop::Outcomes outcomes;
    for (const std::string& profileId : signedIn) {
        // As it is now: the user may have signed out meanwhile.
        const std::optional<Accounts::Attempt> attempt = accounts_.attempt(profileId);
        if (!attempt || stop.stop_requested()) {
            continue;
        }
        auto fetching = sync.fetch(attempt->session, stop);
        SyncOutcome::Any outcome = co_await fetching;
        if (stop.stop_requested() && std::holds_alternative<SyncOutcome::Failed>(outcome)) {
            break;
        }
        outcomes.push_back(outcome);
        accounts_.apply(std::move(outcome), *attempt);
        auto saving = attempt->session->saveUnsaved();
        co_await saving;
    }
    co_return outcomes;
}

QCoro::Task<std::optional<std::string>> AppModel::signIn() { return tasks_.add(signInAndSelect()); }

QCoro::Task<std::optional<std::string>> AppModel::signInAndSelect()
{
    if (quitting_.stop_requested()) {
        co_return std::nullopt;
    }
    auto signing = signIn_.run();
    std::optional<std::string> profileId = co_await signing;
    if (!profileId) {
        co_return std::nullopt;
    }
    select(profileId);
    accounts_.persist(Accounts::Reload::yes);
    applyLoginDefaultOnce();
    state_.setSignInState(SignInState::Idle{});
    qCInfo(RoostLog::auth, "sign-in finished");
    if (!quitting_.stop_requested()) {
        announcements_.askForPermission();
    }
    co_return profileId;
}

QCoro::Task<void> AppModel::signOut(std::string profileId)
{
    auto signingOut = tasks_.add(accounts_.signOut(profileId));
    if (state_.selectedProfileID() == profileId) {
        const auto& accounts = state_.accounts();
        select(accounts.empty() ? std::nullopt : std::optional{accounts.front().profileId});
    }
    return signingOut;
}

void AppModel::select(std::optional<std::string> profileId)
{
    parts_.settings.setText(AppSettings::selectedProfileId, profileId);
    state_.setSelectedProfileID(std::move(profileId));
}

void AppModel::openRoost()
{
    const RoostAccountRecord* const record = selected();
    const bool hasNumbers = record != nullptr && record->snapshot;
    if (const auto page =
            overviewPage(hasNumbers ? record->snapshot->roostUrl : std::nullopt, parts_.baseURL)) {
        parts_.open(*page);
    }
}

const RoostAccountRecord* AppModel::selected() const
{
    return accountFor(state_.accounts(), state_.selectedProfileID());
}

bool AppModel::isSignedIn() const
{
    return std::ranges::any_of(state_.accounts(),
                               [](const auto& record) { return record.status == Status::ok; });
}

RoostWidgetModel::Content AppModel::content(Date at) const { return RoostTimeline::content(selected(), at); }

QCoro::Task<void> AppModel::quit()
{
    quitting_.request_stop();
    signIn_.cancel();
    folderWatcher_.reset();
    loop_->stop();
    auto looping = loop_->settled();
    co_await looping;
    auto acting = tasks_.settled();
    co_await acting;
    auto ending = accounts_.quit();
    co_await ending;
    auto delivering = announcements_.quit();
    co_await delivering;
    // Nobody signs in any more, but somebody may have been signed out meanwhile.
    auto signingOut = tasks_.settled();
    co_await signingOut;
    announcements_.saveUnsaved();
    accounts_.persistUnsaved();
}

void AppModel::setLaunchAtLogin(bool enabled)
{
    if (parts_.loginItem == nullptr) {
        return;
    }
    if (const auto done = LaunchAtLogin::set(*parts_.loginItem, enabled); !done) {
        qCWarning(RoostLog::console, "Brisken Roost: launch at login could not be changed (%s)",
                  done.error().c_str());
    }
    checkLaunchAtLogin();
}

void AppModel::checkLaunchAtLogin()
{
    if (parts_.loginItem == nullptr) {
        return;
    }
    const LoginItem::Status status = parts_.loginItem->status();
    state_.setLaunchAtLogin(status == LoginItem::Status::enabled);
    state_.setLaunchNeedsApproval(status == LoginItem::Status::requiresApproval);
}

/// On the first sign-in ever the app comes to stay; what the user chooses later is never overridden.
void AppModel::applyLoginDefaultOnce()
{
    if (parts_.loginItem == nullptr || parts_.settings.boolean(AppSettings::didApplyLaunchAtLoginDefault)) {
        return;
    }
    parts_.settings.setBoolean(AppSettings::didApplyLaunchAtLoginDefault, true);
    setLaunchAtLogin(true);
}

} // namespace roost
