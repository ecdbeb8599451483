#include "tests/app/AppSimulation.h"

#include "tests/app/AppSimulationNumbers.h"

#include <algorithm>

namespace roost::test {

namespace {

using namespace std::chrono_literals;

} // namespace

AppSimulation::AppSimulation(std::uint64_t seed)
    : world_{seed},
      dice_{world_.dice},
      judge_{seed, world_.time},
      weather_{world_},
      laws_{judge_, world_}
{
    world_.roost.onRead = [this](RoostSnapshot& numbers) { liveOn(numbers, dice_, world_.trueTime()); };
    world_.roost.onAnswer = [this](const HttpRequest& request, HttpResult result) {
        HttpResult arriving = weather_.onWayBack(request, std::move(result));
        laws_.answered(request, arriving);
        return arriving;
    };
    for (std::size_t i = dice_.below(4); i > 0; --i) {
        world_.signInBefore("p" + std::to_string(i));
    }
}

std::string AppSimulation::run(int days)
{
    const std::chrono::milliseconds end = world_.bootTime() + std::chrono::days{days};
    world_.start();
    while (!judge_.hasFound() && world_.bootTime() < end) {
        live(dice_.between(1s, 12min));
        if (!judge_.hasFound()) {
            happen();
        }
    }
    if (!judge_.hasFound()) {
        processEnds();
    }
    census_.shown = laws_.shownCount();
    return judge_.finding();
}

void AppSimulation::live(std::chrono::milliseconds length)
{
    const std::chrono::milliseconds end = world_.bootTime() + length;
    bool isMoving = true;
    while (isMoving && !judge_.hasFound()) {
        isMoving = world_.time.step(std::max(end - world_.bootTime(), 0ms));
        ++census_.steps;
        if (world_.isFrozen()) {
            die();
        }
        laws_.look();
    }
}

void AppSimulation::happen()
{
    switch (dice_.below(12)) {
    case 0:
    case 1:
    case 2:
        weather_.change();
        break;
    case 3:
    case 4:
        systemActs();
        break;
    case 5:
        serviceActs();
        break;
    case 6:
        if (dice_.isOneIn(2)) {
            processEnds();
            startAgain();
        } else {
            // Dies before one of its next dealings with the disk, or now.
            const std::size_t last = world_.files.seen().size() + dice_.below(40);
            world_.files.beforeEach([this, last](std::size_t n) {
                if (n >= last) {
                    world_.freeze();
                }
            });
            if (dice_.isOneIn(4)) {
                world_.freeze();
                die();
            }
        }
        break;
    default:
        userActs();
    }
    // What happens at once, happens before anybody looks.
    live(0ms);
}

void AppSimulation::systemActs()
{
    switch (dice_.below(5)) {
    case 0:
        setClock();
        break;
    case 1:
        if (world_.events.observer.woke) {
            world_.events.observer.woke();
        }
        break;
    default:
        sleep();
    }
}

void AppSimulation::sleep()
{
    world_.time.sleep(dice_.between(1min, dice_.isOneIn(6) ? 6h : 30min));
    if (dice_.isOneIn(2)) {
        weather_.cutOff();
    }
    const bool tells = dice_.isOneIn(2) && world_.events.observer.woke;
    if (tells && dice_.isOneIn(2)) {
        world_.events.observer.woke();
    }
    // What was due comes at once, and only then is everything as it should be.
    world_.time.advance(0ms);
    if (tells && world_.events.observer.woke) {
        world_.events.observer.woke();
    }
}

void AppSimulation::setClock()
{
    constexpr std::chrono::hours most{48};
    const bool isRight = dice_.isOneIn(2);
    const std::chrono::milliseconds error = isRight ? 0ms : dice_.between(-most, most);
    world_.time.setClock(world_.trueTime() + error);
    laws_.clockIsSet();
}

/// The service, or another process that asks it.
void AppSimulation::serviceActs()
{
    const std::string profileId = anyProfile();
    if (dice_.isOneIn(3)) {
        world_.lock.holdElsewhere(dice_.between(1s, 2min));
    } else if (dice_.isOneIn(4)) {
        world_.roost.revoke(profileId);
    } else {
        world_.roost.expire(profileId);
    }
}

void AppSimulation::processEnds()
{
    laws_.processEnds();
    isQuitting_ = true;
    const SimulatedWorld::Ending ending = world_.quit([this] { userActs(); });
    isQuitting_ = false;
    judge_.expect(ending != SimulatedWorld::Ending::stuck, "quitting ends, and with it all that was begun",
                  std::to_string(world_.time.pauses()) + " waits");
    if (ending == SimulatedWorld::Ending::finished) {
        laws_.lookAtWhatIsLeft();
        // The keyring's question to the user stays where it is.
        judge_.expect(world_.time.pauses() == world_.keyring.questions(), "nothing goes on after quitting");
    }
}

void AppSimulation::die()
{
    ++census_.kills;
    laws_.processEnds();
    world_.bury();
    if (dice_.isOneIn(3)) {
        using Names = MemoryFileSystem::UnflushedNames;
        world_.disk.cutPower(dice_.isOneIn(2) ? Names::lost : Names::kept);
    }
    startAgain();
}

void AppSimulation::startAgain()
{
    world_.files.beforeEach([](std::size_t) {});
    if (dice_.isOneIn(2)) {
        world_.time.sleep(dice_.between(0ms, 1h));
    }
    if (dice_.isOneIn(4)) {
        widgetAsks();
    }
    world_.start();
}

} // namespace roost::test
