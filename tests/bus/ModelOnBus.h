#pragma once

#include "bus/ModelAdaptor.h"
#include "tests/app/AppWorld.h"
#include "tests/bus/BusPeer.h"
#include "tests/bus/ChangeListener.h"
#include "tests/support/PrivateBus.h"

#include <QDeadlineTimer>
#include <QThread>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace roost::test {

/// The real app, on a machine and a time of its own, on a real bus.
class ModelOnBus {
public:
    explicit ModelOnBus(PrivateBus::Users users = PrivateBus::Users::thisOne) : bus_(std::in_place, users) {}

    /// The app comes to the bus, under its name. It has been started.
    void appear() { appearAt(bus_->address()); }

    void appearAt(const QString& address)
    {
        seat_ = std::make_unique<BusPeer>(address);
        adaptor_->attach(seat_->connection());
        // The one before may still be on its way out.
        while (seat_->takeName() != 1U) {
        }
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

    /// The result of `task`, for which the app's time passes, a millisecond at a time.
    template <class T>
    T awaitInTime(QCoro::Task<T> task)
    {
        Pending<T> pending(std::move(task));
        const QDeadlineTimer guard(guardTime);
        while (!pending.isDone() && !guard.hasExpired()) {
            world.time.advance(std::chrono::milliseconds(1));
            // The bus has its say as well.
            QThread::usleep(100);
        }
        return pending.get();
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

/// What two states say differently, by the names of the properties; empty when they agree.
inline std::string difference(const AppState& one, const AppState& other)
{
    std::string names;
    const auto compare = [&](const char* name, auto get) {
        if (std::invoke(get, one) != std::invoke(get, other)) {
            names += std::string(name) + ' ';
        }
    };
    compare("accounts", &AppState::accounts);
    compare("isRefreshing", &AppState::isRefreshing);
    compare("lastRefreshAt", &AppState::lastRefreshAt);
    compare("signInState", &AppState::signInState);
    compare("selectedProfileID", &AppState::selectedProfileID);
    compare("launchAtLogin", &AppState::launchAtLogin);
    compare("launchNeedsApproval", &AppState::launchNeedsApproval);
    compare("updateStatus", &AppState::updateStatus);
    return names;
}

/// Whether two states say the same.
inline bool agree(const AppState& one, const AppState& other) { return difference(one, other).empty(); }

} // namespace roost::test
