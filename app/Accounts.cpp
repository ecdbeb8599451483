#include "app/Accounts.h"

#include "model/RoostLog.h"

#include <utility>

namespace roost {

Accounts::Accounts(AppState& state, Announcements& announcements, Parts parts)
    : state_{&state},
      announcements_{&announcements},
      parts_{std::move(parts)}
{
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
        dismiss(session);
        if (session->mayLinger()) {
            unforgotten_.insert(session);
        }
    } else {
        qCInfo(RoostLog::sync, "refresh: updated");
    }
    fold(*record, std::move(outcome));
}

void Accounts::welcome(RoostSnapshot snapshot)
{
    RoostAccountRecord record{.profileId = snapshot.profile.id};
    if (const RoostAccountRecord* const known = state_->account(record.profileId)) {
        record = *known;
    }
    gone_.erase(record.profileId);
    signIns_[record.profileId] = ++changes_;
    fold(std::move(record), SyncOutcome::Updated{std::move(snapshot)});
}

/// Everything that a refresh changes, in an order that a crash cannot turn into news that come twice: the
/// ledger is on the disk before anybody is told and before the numbers are.
void Accounts::fold(RoostAccountRecord record, SyncOutcome::Any outcome)
{
    const auto* updated = std::get_if<SyncOutcome::Updated>(&outcome);
    std::vector<PlannedEvent> events;
    if (updated != nullptr) {
        events = announcements_->note(record.profileId, record.snapshot, updated->snapshot);
    }
    record = folded(std::move(record), std::move(outcome), parts_.now());
    state_->setAccount(record);
    if (!events.empty()) {
        announcements_->deliver(std::move(events), *std::move(record.snapshot));
    }
}

QCoro::Task<void> Accounts::signOut(std::string profileId)
{
    const Session session = sessionMade(profileId);
    // At once, so that whatever comes meanwhile, a new sign-in among it, finds the profile gone.
    ++changes_;
    gone_.insert(profileId);
    dismiss(session);
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
        // What its user signed out goes in any case; where the service did, another may have signed in.
        const bool isGone = gone_.contains(session->profileId());
        auto forgetting = isGone ? session->signOut() : session->forgetLingering();
        if (!co_await forgetting) {
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
        const auto written =
            parts_.store.write({.writtenAt = parts_.now(), .accounts = state_->accounts()}, unwritten_);
        unwritten_ = written ? std::error_code{} : written.error();
    }
    if (reload == Reload::yes) {
        parts_.widgets.reloadAll();
    }
}

void Accounts::persistUnsaved()
{
    if (isWithheld_ || unwritten_) {
        persist(Reload::yes);
    }
}

/// The session serves nobody any more, but what it is doing may go on for a while.
void Accounts::dismiss(const Session& session)
{
    sessions_.erase(session->profileId());
    std::erase_if(former_, [](const auto& former) { return former.expired(); });
    former_.push_back(session);
}

QCoro::Task<void> Accounts::quit()
{
    std::vector<Session> sessions;
    for (const auto& [profileId, session] : sessions_) {
        sessions.push_back(session);
    }
    for (const auto& former : former_) {
        if (Session session = former.lock()) {
            sessions.push_back(std::move(session));
        }
    }
    for (const Session& session : sessions) {
        session->quit();
    }
    for (const Session& session : sessions) {
        auto settling = session->settled();
        co_await settling;
        auto saving = session->saveUnsaved();
        co_await saving;
    }
    auto forgetting = forgetAtLast();
    co_await forgetting;
}

} // namespace roost
