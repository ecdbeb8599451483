#include "tests/soak/Troubles.h"

#include "bus/CrossProcessNotification.h"
#include "model/Clock.h"
#include "model/RefreshSignal.h"
#include "tests/support/Await.h"

#include <csignal>
#include <stdexcept>

namespace roost::test {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Machine = SoakMachine;

void require(bool holds, const char* what)
{
    if (!holds) {
        throw std::runtime_error(std::string("in vain: ") + what);
    }
}

const std::string& anyProfile(const Machine& machine, Dice& dice)
{
    return machine.profiles()[dice.below(machine.profiles().size())];
}

/// The endpoint fares so for a while.
void fareFor(Machine& machine, std::chrono::milliseconds time, const char* endpoint, QJsonObject scenario)
{
    scenario.insert(u"endpoint"_s, QLatin1StringView(endpoint));
    machine.control(u"/scenario"_s, scenario);
    Machine::pass(time);
    machine.control(u"/scenario"_s, {{u"endpoint"_s, QLatin1StringView(endpoint)}, {u"kind"_s, u"none"_s}});
}

void fail(Machine& machine, Dice& dice)
{
    fareFor(machine, dice.between(2s, 6s), "widget", {{u"kind"_s, u"status"_s}, {u"status"_s, 503}});
}

void answerSlowly(Machine& machine, Dice& dice)
{
    fareFor(machine, dice.between(3s, 6s), "widget", {{u"kind"_s, u"delay"_s}, {u"delayMs"_s, 700}});
}

void breakAnswersOff(Machine& machine, Dice& dice)
{
    fareFor(machine, dice.between(2s, 4s), "widget", {{u"kind"_s, u"truncated"_s}, {u"bytes"_s, 40}});
    fareFor(machine, dice.between(2s, 4s), "widget", {{u"kind"_s, u"reset"_s}});
}

void answerNonsense(Machine& machine, Dice& dice)
{
    for (const QString& kind : {u"malformed"_s, u"not-http"_s, u"huge"_s, u"gzip-bomb"_s}) {
        fareFor(machine, dice.between(2s, 3s), "widget", {{u"kind"_s, kind}, {u"bytes"_s, 8 << 20}});
    }
}

void dripAnswers(Machine& machine, Dice& dice)
{
    fareFor(machine, dice.between(3s, 5s), "widget",
            {{u"kind"_s, u"drip"_s}, {u"bytes"_s, 200}, {u"delayMs"_s, 5}});
}

void renewNothing(Machine& machine, Dice& dice)
{
    machine.control(u"/expire"_s, {{u"tokens"_s, u"access"_s}});
    fareFor(machine, dice.between(3s, 6s), "token", {{u"kind"_s, u"status"_s}, {u"status"_s, 500}});
}

void expireAccess(Machine& machine, Dice&)
{
    machine.control(u"/expire"_s, {{u"tokens"_s, u"access"_s}});
    machine.recover();
    fareFor(machine, 3s, "widget", {{u"kind"_s, u"status"_s}, {u"status"_s, 401}, {u"times"_s, 1}});
}

void revokeOne(Machine& machine, Dice& dice)
{
    const std::string profile = anyProfile(machine, dice);
    machine.revoke(profile);
    machine.recover();
    machine.signIn(profile);
}

void signOutAndIn(Machine& machine, Dice& dice)
{
    const std::string profile = anyProfile(machine, dice);
    machine.signOut(profile);
    if (dice.isOneIn(2)) {
        machine.recover();
    }
    machine.signIn(profile);
}

void refuseSignIn(Machine& machine, Dice&)
{
    const auto cancelled = [&] {
        const std::string log = machine.log();
        return QString::fromStdString(log).count(u"sign-in cancelled"_s);
    };
    const auto before = cancelled();
    machine.control(u"/consent"_s, {{u"auto"_s, u"deny"_s}});
    const auto signedIn = await(machine.proxy().signIn(), Machine::guard);
    require(signedIn && !*signedIn, "nobody signs in");
    require(Machine::comes([&] { return cancelled() > before; }, Machine::guard),
            "a sign-in that is refused ends");
}

void askOverTheBus(Machine& machine, Dice& dice)
{
    for (const std::string& profile : machine.profiles()) {
        require(await(machine.proxy().select(profile)) == ModelProxy::Answer::done, "a profile is selected");
        require(Machine::comes([&] { return machine.proxy().state().selectedProfileID() == profile; },
                               Machine::guard),
                "the selection is told");
    }
    for (auto times = 5 + dice.below(20); times > 0; --times) {
        require(await(machine.proxy().requestRefresh(false)) == ModelProxy::Answer::done,
                "a request is taken");
    }
    require(await(machine.proxy().requestRefresh(true), 5min) == ModelProxy::Answer::done,
            "the request is answered");
    require(await(machine.proxy().select("nobody")) == ModelProxy::Answer::noSuchProfile,
            "a profile that is not there is refused");
}

void askThroughTheFolder(Machine& machine, Dice& dice)
{
    for (auto times = 1 + dice.below(5); times > 0; --times) {
        // A widget with a bus and one without.
        const auto post = [&](Date at) {
            if (times % 2 == 0) {
                CrossProcessNotification::post(machine.bus().connection(),
                                               QString::fromLatin1(RefreshSignal::notification), at);
            }
        };
        require(RefreshSignal::request(machine.store(), systemClock()(), post), "the request is written");
        Machine::pass(dice.between(50ms, 1500ms));
    }
}

void comeAndGo(Machine& machine, Dice& dice)
{
    for (auto times = 3 + dice.below(8); times > 0; --times) {
        ModelProxy window{machine.busAddress()};
        require(await(window.connectToApp()), "a window finds the app");
        if (dice.isOneIn(3)) {
            // This one goes without waiting for its answer.
            const Pending<ModelProxy::Answer> pending{window.requestRefresh(true)};
        }
    }
}

void startAgain(Machine& machine, Dice&)
{
    require(machine.run({u"run"_s, u"--headless"_s}) == 0, "a second start ends, fine");
    require(machine.run({u"status"_s}) == 0, "the numbers are shown, and fresh");
}

void lockKeyring(Machine& machine, Dice& dice)
{
    machine.keyring().lock();
    Machine::pass(dice.between(4s, 12s));
    machine.keyring().unlock();
}

void restartKeyring(Machine& machine, Dice& dice)
{
    machine.keyring().end();
    Machine::pass(dice.between(0s, 8s));
    machine.keyring().startUnlocked();
}

void freezeKeyring(Machine& machine, Dice& dice)
{
    machine.keyring().freeze();
    Machine::pass(dice.between(3s, 8s));
    machine.keyring().thaw();
}

void restartBus(Machine& machine, Dice& dice)
{
    machine.endBus();
    Machine::pass(dice.between(0s, 8s));
    machine.startBusAgain();
}

void freezeBus(Machine& machine, Dice& dice)
{
    machine.bus().freeze();
    Machine::pass(dice.between(2s, 8s));
    machine.bus().thaw();
}

void stopAndGoOn(const RealProcess& process, std::chrono::milliseconds time)
{
    process.signal(SIGSTOP);
    Machine::pass(time);
    process.signal(SIGCONT);
}

void stopApp(Machine& machine, Dice& dice) { stopAndGoOn(machine.app(), dice.between(3s, 10s)); }

void stopService(Machine& machine, Dice& dice) { stopAndGoOn(machine.service(), dice.between(3s, 10s)); }

constexpr Trouble all[] = {
    {"the service fails", fail},
    {"the service is slow", answerSlowly},
    {"answers break off", breakAnswersOff},
    {"answers are nonsense", answerNonsense},
    {"answers drip", dripAnswers},
    {"access expires", expireAccess},
    {"no access is renewed", renewNothing},
    {"the service ends a sign-in", revokeOne},
    {"a profile is signed out, and in again", signOutAndIn},
    {"a sign-in is refused", refuseSignIn},
    {"windows ask and select", askOverTheBus},
    {"widgets ask through the folder", askThroughTheFolder},
    {"windows come and go", comeAndGo},
    {"the app is started again", startAgain},
    {"the keyring is locked", lockKeyring},
    {"the keyring is restarted", restartKeyring},
    {"the keyring stands still", freezeKeyring},
    {"the bus is restarted", restartBus},
    {"the bus stands still", freezeBus},
    {"the app stands still", stopApp},
    {"the service stands still", stopService},
};

} // namespace

std::span<const Trouble> troubles() { return all; }

} // namespace roost::test
