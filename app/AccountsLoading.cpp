#include "app/Accounts.h"
#include "model/RoostLog.h"
#include "service/RefreshTokenKeeper.h"

#include <algorithm>
#include <utility>

namespace roost {

namespace {

using Status = RoostAccountRecord::Status;

const char* sentenceFor(SecretsUnavailable trouble)
{
    switch (trouble.why) {
    case SecretsUnavailable::Why::locked:
        return "the keyring is locked";
    case SecretsUnavailable::Why::noService:
        return "there is no keyring";
    case SecretsUnavailable::Why::notAnswering:
        break;
    }
    return "the keyring does not answer";
}

std::string keyOf(const std::string& profileId) { return std::string{refreshTokenPrefix} + profileId; }

} // namespace

std::optional<Date> Accounts::loadRecords()
{
    std::optional<RoostStoreFile> file = parts_.store.read();
    isWithheld_ = !file && parts_.store.isWithheld();
    if (isWithheld_) {
        qCCritical(RoostLog::console,
                   "Brisken Roost: could not read the widget snapshot, which is left as it is");
    }
    if (!file) {
        return std::nullopt;
    }
    state_->setAccounts(std::move(file->accounts));
    return file->writtenAt;
}

QCoro::Task<bool> Accounts::loadSignedIn()
{
    while (!isTold_) {
        const std::uint64_t changes = changes_;
        auto asking = parts_.secrets.keys(std::string{refreshTokenPrefix});
        const auto keys = co_await asking;
        if (isTold_) {
            break; // to somebody else who asked
        }
        noteSilence(keys ? std::nullopt : std::optional{keys.error()});
        if (!keys) {
            trustRecords();
            break;
        }
        // What was told is from before a sign-in or a sign-out of this program.
        if (changes == changes_) {
            isTold_ = true;
            follow(*keys);
            persist(Reload::yes);
            co_return true;
        }
    }
    co_return false;
}

void Accounts::noteSilence(std::optional<SecretsUnavailable> why)
{
    const std::optional<SecretsUnavailable> before = std::exchange(silence_, why);
    if (why == before) {
        return;
    }
    if (why) {
        qCWarning(RoostLog::auth, "%s: waiting to hear who is signed in", sentenceFor(*why));
    } else {
        qCInfo(RoostLog::auth, "the keyring has said who is signed in");
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
        if (gone_.contains(profileId)) {
            continue; // still to be forgotten
        }
        auto record = std::ranges::find(records, profileId, &RoostAccountRecord::profileId);
        if (record == records.end()) {
            record = records.insert(record, {.profileId = profileId, .profileName = parts_.unnamed()});
        }
        record->status = Status::ok;
        sessionMade(profileId);
    }
    state_->setAccounts(std::move(records));
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
        if (!gone_.contains(record.profileId)) {
            takeUp(std::move(record));
        }
    }
}

/// What is known of the profile by now counts for more, but its last numbers are these.
void Accounts::takeUp(RoostAccountRecord record)
{
    const RoostAccountRecord* const known = state_->account(record.profileId);
    if (known != nullptr && known->snapshot) {
        return;
    }
    if (known != nullptr) {
        record.status = known->status;
        record.lastAttemptAt = known->lastAttemptAt;
    } else if (isTold_) {
        record.status = Status::signedOut;
    } else if (record.status == Status::ok) {
        sessionMade(record.profileId);
    }
    state_->setAccount(std::move(record));
}

} // namespace roost
