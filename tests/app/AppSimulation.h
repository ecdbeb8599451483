#pragma once

#include "tests/app/AppSimulationLaws.h"
#include "tests/app/AppSimulationWeather.h"
#include "tests/app/AppSimulationWorld.h"

#include <string>

namespace roost::test {

/// The whole app in a world where everything happens that can: hours in which the service, the network, the
/// keyring and the disk fail, a user who clicks, a machine that sleeps, a clock that is set, a process that
/// dies and starts again. One seed is one course of events.
class AppSimulation {
public:
    explicit AppSimulation(std::uint64_t seed);

    /// Runs so many days. The law that was broken, or nothing.
    std::string run(int days);

    /// How often things happened, to tell that they do.
    struct Census {
        std::size_t steps = 0;
        std::size_t kills = 0;
        std::size_t shown = 0;
        std::size_t signIns = 0;
    };
    const Census& census() const { return census_; }

private:
    void live(std::chrono::milliseconds length);
    void happen();
    void userActs();
    void userSignsIn();
    void userSignsOut();
    void userSelects();
    void widgetAsks();
    void systemActs();
    void sleep();
    void setClock();
    void serviceActs();
    void processEnds();
    void die();
    void startAgain();

    std::string anyProfile();

    SimulatedWorld world_;
    Dice& dice_;
    Judge judge_;
    SimulatedWeather weather_;
    SimulationLaws laws_;
    Census census_;
    bool isQuitting_ = false;
};

} // namespace roost::test
