#include "tests/app/AppSimulationLaws.h"

#include "app/AppSettings.h"

#include <algorithm>

namespace roost::test {

namespace {

using namespace std::chrono_literals;
using Status = RoostAccountRecord::Status;

/// The one that hears the log.
SimulationLaws* listening = nullptr;

const RoostAccountRecord* find(const std::vector<RoostAccountRecord>& records, const std::string& profileId)
{
    const auto found = std::ranges::find(records, profileId, &RoostAccountRecord::profileId);
    return found == records.end() ? nullptr : &*found;
}

std::optional<double> retryAfterIn(const std::string& line)
{
    double seconds = 0;
    const bool isThere =
        std::sscanf(line.c_str(), "refresh: failed (unavailable, retry after %lf s)", &seconds) == 1;
    return isThere ? std::optional{seconds} : std::nullopt;
}

} // namespace

SimulationLaws::SimulationLaws(Judge& judge, SimulatedWorld& world)
    : judge_{&judge},
      world_{&world},
      verdicts_{world},
      cadence_{judge, world.time},
      formerHandler_{qInstallMessageHandler(hear)},
      store_{world.disk, world.store.directory()},
      ledgerStore_{world.disk, world.ledgerStore.url()}
{
    listening = this;
    world.center.onShown = [this](const NotificationCenter::Request& request) { shown(request); };
    world.keyring.onTrouble = [this] { lastKeyringTrouble_ = bootTime(); };
    world.onMade = [this](AppModel& app) { processBegins(app); };
    world.onEnding = [this](AppModel& app) { lookAtTheEnd(app); };
}

SimulationLaws::~SimulationLaws()
{
    qInstallMessageHandler(formerHandler_);
    listening = nullptr;
}

void SimulationLaws::hear(QtMsgType, const QMessageLogContext&, const QString& message)
{
    if (listening != nullptr && listening->isJudging_) {
        listening->heard(message.toStdString());
    }
}

void SimulationLaws::processBegins(AppModel& app)
{
    app_ = &app;
    isJudging_ = true;
    cadence_.reset();
    accounts_.clear();
    leaving_.clear();
    lastRefreshAt_.reset();
    accountsAreNew_ = true;
    fileIsExcused_ = false;
    ledgerIsExcused_ = false;
    processStart_ = bootTime();
    // What the ledger could not keep went with the process that knew it.
    const AnnouncedLedger ledger = world_->isLedgerForgotten ? AnnouncedLedger{} : ledgerStore_.load();
    for (auto& [key, isKnown] : shown_) {
        isKnown = ledger.entries.contains(key);
    }
    diskFailures_ = world_->files.failures();
    const AppState& state = app.state();
    QObject::connect(&state, &AppState::accountsChanged, &state, [this] { accountsChanged(); });
    QObject::connect(&state, &AppState::isRefreshingChanged, &state, [this] { refreshingChanged(); });
    QObject::connect(&state, &AppState::signInStateChanged, &state, [this] { ++signIns_; });
}

void SimulationLaws::processEnds() { isJudging_ = false; }

void SimulationLaws::heard(const std::string& line)
{
    if (line == "refresh requested") {
        cadence_.requested();
    } else if (line == "refresh: updated") {
        cadence_.updated();
    } else if (line.starts_with("refresh: failed (")) {
        cadence_.failed(retryAfterIn(line));
    }
}

void SimulationLaws::accountsChanged()
{
    const std::vector<RoostAccountRecord>& accounts = app_->state().accounts();
    accountsAreNew_ = true;
    for (const RoostAccountRecord& before : accounts_) {
        const RoostAccountRecord* const after = find(accounts, before.profileId);
        if (isJudging_ && after == nullptr) {
            judge_->expect(leaving_.contains(before.profileId), "a profile goes when its user signs it out",
                           before.profileId);
        } else if (isJudging_) {
            recordChanged(before, *after);
        }
    }
    for (const RoostAccountRecord& after : accounts) {
        const bool isNew = find(accounts_, after.profileId) == nullptr;
        if (isJudging_ && isNew && leaving_.erase(after.profileId) > 0) {
            const bool isSignIn =
                std::holds_alternative<SignInState::InProgress>(app_->state().signInState());
            judge_->expect(isSignIn && world_->browser.profileOfNextSignIn == after.profileId,
                           "a profile that was signed out comes back by signing in", after.profileId);
        }
    }
    accounts_ = accounts;
}

void SimulationLaws::recordChanged(const RoostAccountRecord& before, const RoostAccountRecord& after)
{
    const std::string& who = before.profileId;
    if (before.status == Status::ok && after.status == Status::signedOut) {
        judge_->expect(verdicts_.isSpoken(who), "a profile is signed out by a verdict", who);
    }
    if (!before.snapshot) {
        return;
    }
    judge_->expect(after.snapshot && after.fetchedAt, "the last numbers stay", who);
    if (!judge_->hasFound() && after.snapshot != before.snapshot) {
        // Those of a sign-in may have been made before it was over.
        judge_->expect(after.snapshot->views.total > before.snapshot->views.total || world_->isChanging(),
                       "numbers are replaced by newer ones", who);
        judge_->expect(after.fetchedAt == now() && after.lastAttemptAt == now(),
                       "numbers carry the time at which they came", who);
    } else {
        judge_->expect(after.fetchedAt == before.fetchedAt, "old numbers keep their time", who);
    }
}

void SimulationLaws::refreshingChanged()
{
    if (!isJudging_) {
        return;
    }
    if (!app_->state().isRefreshing()) {
        cycleEnded();
        cadence_.ended();
        return;
    }
    cadence_.began();
    ++cycles_;
    noteTroubles();
    beganAt_ = now();
    askedAtBegin_.clear();
    for (const RoostAccountRecord& record : accounts_) {
        if (record.status == Status::ok) {
            askedAtBegin_.push_back(record.profileId);
        }
    }
    reloads_ = world_->widgets.reloads;
}

void SimulationLaws::cycleEnded()
{
    noteTroubles();
    judge_->expect(world_->widgets.reloads > reloads_, "widgets are told after every cycle");
    if (lastDiskTrouble_ < cadence_.lastStart()) {
        fileIsExcused_ = false;
        ledgerIsExcused_ = ledgerIsExcused_ && !cadence_.sawUpdate();
    }
    const std::optional<Date> refreshed = app_->state().lastRefreshAt();
    const bool isNow = refreshed == now();
    if (cadence_.sawUpdate()) {
        judge_->expect(isNow, "the last refresh is when numbers came");
    } else if (!cadence_.isBlurred()) {
        judge_->expect(refreshed == lastRefreshAt_, "a cycle without numbers is no refresh");
    }
    lastRefreshAt_ = refreshed;
    if (cadence_.isBlurred()) {
        return;
    }
    for (const std::string& profileId : askedAtBegin_) {
        const RoostAccountRecord* const record = find(accounts_, profileId);
        const bool isTried = record != nullptr && record->lastAttemptAt && *record->lastAttemptAt >= beganAt_;
        judge_->expect(isTried, "every profile that is signed in is tried in every cycle", profileId);
    }
}

void SimulationLaws::shown(const NotificationCenter::Request& request)
{
    const bool isOnDisk = ledgerStore_.load().entries.contains(request.identifier);
    noteTroubles();
    judge_->expect(isOnDisk || ledgerIsExcused_, "what is told has been remembered", request.identifier);
    const auto [known, isNew] = shown_.emplace(request.identifier, true);
    judge_->expect(isNew || !known->second, "nothing is told twice", request.identifier);
    // Until the process ends it is known, on the disk or not.
    known->second = true;
}

void SimulationLaws::userSignsOut(const std::string& profileId) { leaving_[profileId] = bootTime(); }

void SimulationLaws::noteTroubles()
{
    if (world_->files.failures() != std::exchange(diskFailures_, world_->files.failures())) {
        lastDiskTrouble_ = bootTime();
        fileIsExcused_ = true;
        ledgerIsExcused_ = true;
    }
}

void SimulationLaws::look()
{
    if (!isJudging_) {
        return;
    }
    noteTroubles();
    if (world_->isChanging()) {
        cadence_.blur();
    }
    if (world_->keyring.mood != SimulatedKeyring::Mood::well) {
        lastKeyringTrouble_ = bootTime();
    }
    cadence_.momentIsOver();
    countRequests();
    lookAtTheFile();
    lookAtTheTokens();
    lookAtTheKeyring();
    const AppState& state = app_->state();
    judge_->expect(state.selectedProfileID() == world_->settings.text(AppSettings::selectedProfileId),
                   "the selection is what the settings hold");
    judge_->expect(world_->center.busy <= 1, "notifications come one after another");
    judge_->expect(!world_->isUnderWay(12h), "everything that the user asked for ends");
}

} // namespace roost::test
