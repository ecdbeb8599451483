#include "tests/app/AppSimulationDesktop.h"

#include <algorithm>

namespace roost::test {

using namespace std::chrono_literals;

QCoro::Task<void> SimulatedCenter::takeUpTo(std::chrono::milliseconds most)
{
    auto taking = time_->pause()(dice_->between(0ms, most), {});
    co_await taking;
}

QCoro::Task<NotificationCenter::Authorization> SimulatedCenter::authorization(std::chrono::milliseconds)
{
    auto taking = takeUpTo(50ms);
    co_await taking;
    co_return Authorization{authorized};
}

QCoro::Task<NotificationCenter::Authorization>
SimulatedCenter::requestAuthorization(std::chrono::milliseconds limit)
{
    auto taking = takeUpTo(limit);
    co_await taking;
    if (authorized == Authorization::notDetermined) {
        authorized = dice_->isOneIn(4) ? Authorization::denied : Authorization::authorized;
    }
    co_return Authorization{authorized};
}

QCoro::Task<bool> SimulatedCenter::add(Request request, std::chrono::milliseconds limit)
{
    ++busy;
    auto taking = takeUpTo(std::min<std::chrono::milliseconds>(limit, 2s));
    co_await taking;
    --busy;
    const bool isTaken = !isFrozen && !dice_->isOneIn(20);
    if (isTaken) {
        onShown(request);
    }
    co_return isTaken;
}

class SimulatedLock::HeldName final : public Held {
public:
    HeldName(SimulatedLock& lock, std::string name) : lock_{&lock}, name_{std::move(name)} {}
    HeldName(const HeldName&) = delete;
    HeldName& operator=(const HeldName&) = delete;
    ~HeldName() override { lock_->held_.erase(name_); }

private:
    SimulatedLock* lock_;
    std::string name_;
};

QCoro::Task<std::unique_ptr<RefreshLock::Held>> SimulatedLock::acquire(std::string profileId,
                                                                       std::stop_token stop)
{
    // Longer than a refresh takes.
    constexpr int tries = 90;
    for (int i = 0; i < tries && !stop.stop_requested(); ++i) {
        if (time_->bootTime()() >= others_ && held_.insert(profileId).second) {
            std::unique_ptr<Held> held = std::make_unique<HeldName>(*this, profileId);
            co_return held;
        }
        auto waiting = time_->pause()(1s, stop);
        co_await waiting;
    }
    co_return std::unique_ptr<Held>{};
}

} // namespace roost::test
