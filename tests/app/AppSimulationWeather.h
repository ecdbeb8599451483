#pragma once

#include "tests/app/AppSimulationWorld.h"

#include <optional>

namespace roost::test {

/// What goes wrong around the app: in the network, the service, the keyring and on the disk.
class SimulatedWeather {
public:
    explicit SimulatedWeather(SimulatedWorld& world);

    /// Something changes, for the better as often as not.
    void change();
    /// The network is gone for a while, as after a sleep.
    void cutOff() { network_ = Network::offline; }
    /// Nothing is wrong any more.
    void clear();
    /// What becomes of an answer on its way back.
    HttpResult onWayBack(const HttpRequest& request, HttpResult result);

private:
    enum class Network { well, slow, flaky, losingAnswers, offline };
    enum class Service { well, overloaded, broken, talkingNonsense, refusing, forbidding };

    std::chrono::milliseconds latency();
    std::optional<HttpResult> trouble(const HttpRequest& request);
    HttpResult overloaded();
    void changeDisk();

    SimulatedWorld* world_;
    Network network_ = Network::well;
    Service service_ = Service::well;
};

} // namespace roost::test
