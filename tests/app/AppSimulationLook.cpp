#include "service/RefreshTokenKeeper.h"
#include "tests/app/AppSimulationLaws.h"

#include <algorithm>

namespace roost::test {

namespace {

using namespace std::chrono_literals;
using Status = RoostAccountRecord::Status;

std::string keyOf(const std::string& profileId) { return std::string{refreshTokenPrefix} + profileId; }

std::string idsOf(const std::vector<RoostAccountRecord>& records)
{
    std::string all;
    for (const RoostAccountRecord& record : records) {
        all += record.profileId + (record.status == Status::ok ? " " : " (signed out) ");
    }
    return all;
}

} // namespace

/// The shared file is whole at all times, and while nothing is under way it is what is published.
void SimulationLaws::lookAtTheFile()
{
    const std::size_t seen = world_->files.seen().size();
    if (std::exchange(filesSeen_, seen) != seen) {
        accountsAreNew_ = true;
    }
    if (!accountsAreNew_ || cadence_.isRunning() || world_->isChanging()) {
        return;
    }
    accountsAreNew_ = false;
    const std::optional<std::string> bytes = world_->disk.contents(store_.file());
    const std::optional<RoostStoreFile> file = store_.read();
    judge_->expect(!bytes || file, "the file is whole");
    if (!fileIsExcused_) {
        judge_->expect(file && file->accounts == accounts_, "the file is what is published",
                       idsOf(file ? file->accounts : std::vector<RoostAccountRecord>{}) + "instead of " +
                           idsOf(accounts_));
    }
}

void SimulationLaws::lookAtTheTokens()
{
    const std::vector<std::string>& reused = world_->roost.reused();
    for (; reusesSeen_ < reused.size(); ++reusesSeen_) {
        judge_->expect(world_->lostTokens.contains(reused[reusesSeen_]), "no refresh token is sent twice",
                       reused[reusesSeen_]);
    }
}

void SimulationLaws::lookAtTheKeyring()
{
    if (world_->isChanging() || cadence_.isRunning()) {
        return;
    }
    for (const auto& [profileId, since] : leaving_) {
        const bool couldBe = cadence_.lastStart() > std::max(since, lastKeyringTrouble_);
        judge_->expect(!couldBe || !world_->keyring.items().contains(keyOf(profileId)),
                       "the token of a profile that the user signed out is forgotten", profileId);
    }
    for (const RoostAccountRecord& record : accounts_) {
        const bool isSignedIn = record.status == Status::ok;
        const bool isKept = world_->keyring.items().contains(keyOf(record.profileId));
        judge_->expect(isSignedIn || !isKept || lastKeyringTrouble_ >= processStart_,
                       "the token of a profile that was signed out is forgotten", record.profileId);
        judge_->expect(!isSignedIn || isKept || lastKeyringTrouble_ >= cadence_.lastStart(),
                       "the token of a profile that is signed in is kept", record.profileId);
    }
}

void SimulationLaws::countRequests()
{
    for (const auto& [profileId, count] : verdicts_.takeAsked()) {
        asked_[profileId] += count;
    }
    if (bootTime() - hour_ < 1h || cadence_.isRunning()) {
        return;
    }
    for (const auto& [profileId, count] : asked_) {
        judge_->expect(count <= 2 * cycles_ + 3 * signIns_, "requests per profile and hour are bounded",
                       profileId + ": " + std::to_string(count));
    }
    hour_ = bootTime();
    asked_.clear();
    cycles_ = 0;
    signIns_ = 0;
}

void SimulationLaws::lookAtTheEnd(AppModel& app)
{
    noteTroubles();
    judge_->expect(!world_->events.folderChanged, "nobody watches the folder after quitting");
    const std::optional<RoostStoreFile> file = store_.read();
    const std::vector<RoostAccountRecord>& accounts = app.state().accounts();
    if (!fileIsExcused_ && cadence_.lastStart() >= processStart_) {
        judge_->expect(file && file->accounts == accounts, "the file is what was published last",
                       idsOf(accounts));
    }
}

void SimulationLaws::lookAtWhatIsLeft()
{
    for (const RoostAccountRecord& record : accounts_) {
        const bool isLost = record.status == Status::ok && world_->robbed.contains(record.profileId);
        judge_->expect(!isLost || world_->keyring.mood != SimulatedKeyring::Mood::well,
                       "quitting loses no token", record.profileId);
    }
}

} // namespace roost::test
