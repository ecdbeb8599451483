#pragma once

#include "notify/NotificationCenter.h"
#include "service/RefreshLock.h"
#include "tests/app/AppSimulationDice.h"
#include "tests/support/VirtualTime.h"

#include <functional>
#include <memory>
#include <set>
#include <string>

namespace roost::test {

/// The place for notifications, which takes its time.
class SimulatedCenter final : public NotificationCenter {
public:
    SimulatedCenter(VirtualTime& time, Dice& dice) : time_{&time}, dice_{&dice} {}

    Authorization authorized = Authorization::authorized;
    /// The program that notifies is dead.
    bool isFrozen = false;
    /// Called with each notification that is shown.
    std::function<void(const Request&)> onShown = [](const Request&) {};
    Delegate* delegate = nullptr;
    /// How many are on their way.
    int busy = 0;

    void setDelegate(Delegate* next) override { delegate = next; }
    QCoro::Task<Authorization> authorization(std::chrono::milliseconds limit) override;
    QCoro::Task<Authorization> requestAuthorization(std::chrono::milliseconds limit) override;
    QCoro::Task<bool> add(Request request, std::chrono::milliseconds limit) override;

private:
    QCoro::Task<void> takeUpTo(std::chrono::milliseconds most);

    VirtualTime* time_;
    Dice* dice_;
};

/// The locks of a machine on which other processes refresh now and then.
class SimulatedLock final : public RefreshLock {
public:
    explicit SimulatedLock(VirtualTime& time) : time_{&time} {}

    QCoro::Task<std::unique_ptr<Held>> acquire(std::string profileId, std::stop_token stop) override;

    /// Another process has every lock for so long.
    void holdElsewhere(std::chrono::milliseconds length) { others_ = time_->bootTime()() + length; }

private:
    class HeldName;

    VirtualTime* time_;
    std::chrono::milliseconds others_{0};
    std::set<std::string> held_;
};

} // namespace roost::test
