#include "tests/support/ScriptedRefreshLock.h"

#include <algorithm>
#include <utility>

namespace roost::test {

class ScriptedRefreshLock::HeldName final : public RefreshLock::Held {
public:
    HeldName(ScriptedRefreshLock& lock, std::string name) : lock_(&lock), name_(std::move(name)) {}
    ~HeldName() override
    {
        lock_->held_.erase(name_);
        --lock_->askers_;
    }

    HeldName(const HeldName&) = delete;
    HeldName& operator=(const HeldName&) = delete;

private:
    ScriptedRefreshLock* lock_;
    std::string name_;
};

QCoro::Task<std::unique_ptr<RefreshLock::Held>> ScriptedRefreshLock::acquire(std::string profileId,
                                                                             std::stop_token stop)
{
    ++askers_;
    mostAskers_ = std::max(mostAskers_, askers_);
    const ShuffledTurns::Turn turn = turns_->turn();
    do {
        co_await turn;
        if (isBlocked || stop.stop_requested()) {
            --askers_;
            co_return std::unique_ptr<Held>();
        }
    } while (held_.contains(profileId));
    held_.insert(profileId);
    co_return std::unique_ptr<Held>(std::make_unique<HeldName>(*this, std::move(profileId)));
}

} // namespace roost::test
