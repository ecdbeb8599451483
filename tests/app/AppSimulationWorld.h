#pragma once

#include "app/AppModel.h"
#include "tests/app/AppSimulationDesktop.h"
#include "tests/app/AppSimulationDice.h"
#include "tests/app/AppSimulationKeyring.h"
#include "tests/app/AppWorld.h"

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace roost::test {

/// A machine, a service and the app, on a time of their own, where a process can die at any moment.
class SimulatedWorld {
public:
    explicit SimulatedWorld(std::uint64_t seed);
    ~SimulatedWorld();
    SimulatedWorld(const SimulatedWorld&) = delete;
    SimulatedWorld& operator=(const SimulatedWorld&) = delete;

    /// Starts the app.
    void start();
    /// Quits it, as its user does, who goes on clicking meanwhile. It may die before it has ended; it is
    /// stuck when it, or anything that it had begun, takes longer than a few minutes.
    enum class Ending { finished, died, stuck };
    Ending quit(const std::function<void()>& meanwhile);
    /// From now on nothing that the app does has any effect: its process is dead. `bury` has to follow.
    void freeze();
    /// Clears away what is left of the frozen app.
    void bury();
    bool isFrozen() const { return isFrozen_; }

    /// Keeps count of what the user had the app begin: whether it can change who is signed in.
    enum class Kind { asks, changes };
    void begin(Kind kind, QCoro::Task<void> deed);
    /// Whether something that began so long ago has not ended.
    bool isUnderWay(std::chrono::milliseconds after = {});
    /// Whether something is under way that can change who is signed in.
    bool isChanging() const;

    /// As if by an earlier run: its token is in the store.
    void signInBefore(const std::string& profileId);
    std::chrono::milliseconds bootTime() { return time.bootTime()(); }
    /// The time as the service has it, which is right.
    Date trueTime() { return Date{std::chrono::seconds(1'750'000'000)} + bootTime(); }

    Dice dice;
    VirtualTime time{Date{std::chrono::seconds(1'750'001'000)}};
    MemoryFileSystem disk;
    FailingFileSystem files{disk};
    MemorySettings settings;
    SimulatedKeyring keyring{time, dice};
    ModelRoost roost{time};
    ModelRoost::Browser browser{roost};
    SimulatedLock lock{time};
    ScriptedSystemEvents events;
    CountingTimelines widgets;
    ScriptedLoginItem loginItem;
    SimulatedCenter center{time, dice};
    WidgetStore store{files, "/data/group"};
    AnnouncedLedgerStore ledgerStore{files, "/data/BriskenRoost/announced.json"};
    /// Of the process that runs; null when none does.
    std::unique_ptr<AppModel> app;
    /// Called with each new process, before it starts.
    std::function<void(AppModel&)> onMade = [](AppModel&) {};
    /// Called with one that was let finish, before it goes.
    std::function<void(AppModel&)> onEnding = [](AppModel&) {};
    /// Whether the ledger could not be read when this process began.
    bool isLedgerForgotten = false;
    /// The profiles whose newest token went with the last process.
    std::set<std::string> robbed;
    /// Refresh tokens whose successors nobody has: to send them again is all that is left.
    std::set<std::string> lostTokens;

private:
    struct Deed {
        Kind kind;
        Pending<void> pending;
        std::chrono::milliseconds begun;
    };

    void clearAway();
    void noteLostTokens();

    bool isFrozen_ = false;
    std::vector<Deed> deeds_;
    std::map<std::string, std::string, std::less<>> settingsWhenFrozen_;
    bool isLoginItemWhenFrozen_ = false;
};

} // namespace roost::test
