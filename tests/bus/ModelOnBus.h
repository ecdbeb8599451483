#pragma once

#include "bus/ModelAdaptor.h"
#include "tests/app/AppWorld.h"
#include "tests/bus/BusPeer.h"
#include "tests/bus/ChangeListener.h"
#include "tests/support/PrivateBus.h"

#include <memory>

namespace roost::test {

/// The real app, on a machine and a time of its own, on a real bus.
class ModelOnBus {
public:
    explicit ModelOnBus(PrivateBus::Users users = PrivateBus::Users::thisOne) : bus_(std::in_place, users) {}

    /// The app comes to the bus, under its name. It has been started.
    void appear()
    {
        seat_ = std::make_unique<BusPeer>(bus_->address());
        adaptor_->attach(seat_->connection());
        ASSERT_EQ(seat_->takeName(), 1U);
        seat_->catchUp();
    }

    /// It leaves the bus and runs on.
    void disappear()
    {
        adaptor_->detach();
        seat_.reset();
    }

    void start()
    {
        world.start();
        adaptor_ = std::make_unique<ModelAdaptor>(world.app(), [this] { ++quits; });
    }

    /// Ends the app.
    void quit()
    {
        adaptor_.reset();
        seat_.reset();
        world.quit();
    }

    void startOnBus()
    {
        start();
        appear();
    }

    PrivateBus& bus() { return *bus_; }
    ModelAdaptor& adaptor() { return *adaptor_; }
    /// The app's connection.
    const BusPeer& seat() const { return *seat_; }

    /// Another bus takes the place of this one, which is killed, with all of its files.
    void replaceBus()
    {
        bus_->end();
        bus_.reset();
        bus_.emplace();
    }

    LogCatcher log;
    AppWorld world;
    int quits = 0;

private:
    std::optional<PrivateBus> bus_;
    std::unique_ptr<BusPeer> seat_;
    std::unique_ptr<ModelAdaptor> adaptor_;
};

/// Whether two states say the same.
inline bool agree(const AppState& one, const AppState& other)
{
    return one.accounts() == other.accounts() && one.isRefreshing() == other.isRefreshing() &&
           one.lastRefreshAt() == other.lastRefreshAt() && one.signInState() == other.signInState() &&
           one.selectedProfileID() == other.selectedProfileID() &&
           one.launchAtLogin() == other.launchAtLogin() && one.updateStatus() == other.updateStatus();
}

} // namespace roost::test
