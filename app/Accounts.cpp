#include "app/Accounts.h"

#include "model/RoostLog.h"
#include "service/RefreshTokenKeeper.h"

#include <algorithm>
#include <utility>

namespace roost {

namespace {

using Status = RoostAccountRecord::Status;

std::string keyOf(const std::string& profileId) { return std::string{refreshTokenPrefix} + profileId; }

} // namespace

Accounts::Accounts(AppState& state, Announcements& announcements, Parts parts)
    : state_{&state},
      announcements_{&announcements},
      parts_{std::move(parts)}
{
}

std::optional<Date> Accounts::loadRecords()
{
    std::optional<RoostStoreFile> file = parts_.store.read();
    isWithheld_ = !file && parts_.store.isWithheld();
    if (!file) {
        return std::nullopt;
    }
    state_->setAccounts(std::move(file->accounts));
    return file->writtenAt;
}

QCoro::Task<void> Accounts::loadSignedIn()
{
    while (!isTold_) {
        const std::uint64_t changes = changes_;
        auto asking = parts_.secrets.keys(std::string{refreshTokenPrefix});
        const auto keys = co_await asking;
        if (!keys) {
            trustRecords();
            co_return;
        }
        // What was told is from before a sign-in or a sign-out of this program.
        if (changes == changes_) {
            isTold_ = true;
            follow(*keys);
            persist(Reload::yes);
        }
    }
}

/// Until the store tells otherwise, who was signed in still is: the sessions find out.
void Accounts::trustRecords()
{
    for (const RoostAccountRecord& record : state_->accounts()) {
        if (record.status == Status::ok) {
            sessionMade(record.profileId);
        }
    }
}

/// Has records and sessions follow what the store holds.
void Accounts::follow(const std::vector<std::string>& keys)
{
    std::vector<RoostAccountRecord> records = state_->accounts();
    for (RoostAccountRecord& record : records) {
        // A session that is there already knows better: its token may be one that the store did not take.
        const bool isKept = std::ranges::find(keys, keyOf(record.profileId)) != keys.end();
        if (!isKept && !sessions_.contains(record.profileId)) {
            record.status = Status::signedOut;
        }
    }
    for (const std::string& key : keys) {
        const std::string profileId = key.substr(refreshTokenPrefix.size());
        auto record = std::ranges::find(records, profileId, &RoostAccountRecord::profileId);
        if (record == records.end()) {
            record = records.insert(record, {.profileId = profileId, .profileName = parts_.unnamed()});
        }
        record->status = Status::ok;
        sessionMade(profileId);
    }
    state_->setAccounts(std::move(records));
}

Accounts::Session Accounts::session(const std::string& profileId) const
{
    const auto found = sessions_.find(profileId);
    return found == sessions_.end() ? nullptr : found->second;
}

Accounts::Session Accounts::sessionMade(const std::string& profileId)
{
    Session& session = sessions_[profileId];
    if (!session) {
        session = std::make_shared<AccountSession>(profileId, parts_.oauth, parts_.secrets, parts_.lock,
                                                   parts_.now);
    }
    return session;
}

QCoro::Task<void> Accounts::adopt(std::string profileId, TokenSet tokens)
{
    ++changes_;
    const Session session = sessionMade(profileId);
    // A refresh of the former sign-in in another process ends before, and so cannot put its token in place of
    // the new one. Without the lock it goes on all the same: the user is signed in.
    auto locking = session->lock({});
    const auto lock = co_await locking;
    auto adopting = session->adopt(std::move(tokens));
    if (const auto adopted = co_await adopting; !adopted) {
        qCWarning(RoostLog::console, "Brisken Roost: the keychain refused the refresh token (%d)",
                  adopted.error().status);
    }
}

std::optional<Accounts::Attempt> Accounts::attempt(const std::string& profileId) const
{
    const Session session = this->session(profileId);
    return session ? std::optional{Attempt{session, changes_}} : std::nullopt;
}

void Accounts::apply(SyncOutcome::Any outcome, const Attempt& attempt)
{
    const Session& session = attempt.session;
    const std::string& profileId = session->profileId();
    const RoostAccountRecord* const record = state_->account(profileId);
    const auto signedIn = signIns_.find(profileId);
    const bool isOvertaken = signedIn != signIns_.end() && signedIn->second > attempt.begun;
    if (record == nullptr || isOvertaken || this->session(profileId) != session) {
        return;
    }
    if (const auto* failed = std::get_if<SyncOutcome::Failed>(&outcome)) {
        qCWarning(RoostLog::sync, "refresh: failed (%s), keeping the last numbers",
                  describe(failed->reason).c_str());
    } else if (std::holds_alternative<SyncOutcome::SignedOut>(outcome)) {
        if (session->state() == AccountSession::State::active) {
            return;
        }
        qCWarning(RoostLog::sync, "refresh: Roost ended this authorization, profile signed out");
        sessions_.erase(profileId);
    } else {
        qCInfo(RoostLog::sync, "refresh: updated");
    }
    fold(*record, std::move(outcome), Tell::yes);
}

void Accounts::welcome(RoostSnapshot snapshot)
{
    RoostAccountRecord record{.profileId = snapshot.profile.id};
    if (const RoostAccountRecord* const known = state_->account(record.profileId)) {
        record = *known;
    }
    signIns_[record.profileId] = ++changes_;
    fold(std::move(record), SyncOutcome::Updated{std::move(snapshot)}, Tell::no);
}

/// Everything that a refresh changes, in an order that a crash cannot turn into news that come twice: the
/// ledger is on the disk before anybody is told and before the numbers are.
void Accounts::fold(RoostAccountRecord record, SyncOutcome::Any outcome, Tell tell)
{
    const auto* updated = std::get_if<SyncOutcome::Updated>(&outcome);
    std::vector<PlannedEvent> events;
    if (updated != nullptr) {
        events = announcements_->note(record.profileId, record.snapshot, updated->snapshot);
    }
    record = folded(std::move(record), std::move(outcome), parts_.now());
    state_->setAccount(record);
    if (tell == Tell::yes && !events.empty()) {
        announcements_->deliver(std::move(events), *std::move(record.snapshot));
    }
}

QCoro::Task<void> Accounts::signOut(std::string profileId)
{
    const Session session = sessionMade(profileId);
    // At once, so that whatever comes meanwhile, a new sign-in among it, finds the profile gone.
    ++changes_;
    sessions_.erase(profileId);
    std::vector<RoostAccountRecord> records = state_->accounts();
    std::erase_if(records, [&](const auto& record) { return record.profileId == profileId; });
    state_->setAccounts(std::move(records));
    // A refresh in another process ends before, and so cannot bring the token back.
    auto locking = session->lock({});
    const auto lock = co_await locking;
    // What is stored belongs to whoever has signed in again meanwhile.
    if (!this->session(profileId)) {
        auto signingOut = session->signOut();
        const bool isForgotten = co_await signingOut;
        if (!isForgotten) {
            unforgotten_.insert(session);
        }
    }
    persist(Reload::yes);
}

QCoro::Task<void> Accounts::forgetAtLast()
{
    for (const Session& session : std::exchange(unforgotten_, {})) {
        // Signed in again since: what lies in the store is of that.
        if (this->session(session->profileId())) {
            continue;
        }
        auto signingOut = session->signOut();
        if (!co_await signingOut) {
            unforgotten_.insert(session);
        }
    }
}

void Accounts::persist(Reload reload)
{
    if (isWithheld_) {
        recover();
    }
    // Records that nobody has read are not overwritten.
    if (!isWithheld_) {
        static_cast<void>(parts_.store.write({.writtenAt = parts_.now(), .accounts = state_->accounts()}));
    }
    if (reload == Reload::yes) {
        parts_.widgets.reloadAll();
    }
}

/// Takes up the records of a file that could not be read before.
void Accounts::recover()
{
    isWithheld_ = parts_.store.isWithheld();
    std::optional<RoostStoreFile> file = isWithheld_ ? std::nullopt : parts_.store.read();
    if (!file) {
        return;
    }
    for (RoostAccountRecord& record : file->accounts) {
        if (state_->account(record.profileId) == nullptr) {
            state_->setAccount(std::move(record));
        }
    }
}

QCoro::Task<void> Accounts::quit()
{
    const std::map<std::string, Session> sessions = sessions_;
    for (const auto& [profileId, session] : sessions) {
        session->quit();
    }
    for (const auto& [profileId, session] : sessions) {
        auto settling = session->settled();
        co_await settling;
        auto saving = session->saveUnsaved();
        co_await saving;
    }
    auto forgetting = forgetAtLast();
    co_await forgetting;
}

} // namespace roost
