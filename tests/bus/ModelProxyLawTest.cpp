#include "bus/BusValues.h"
#include "bus/ModelProxy.h"
#include "tests/bus/ModelOnBus.h"
#include "tests/support/RandomSnapshot.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;

/// Does to the app whatever a user, the service and time do to it.
class RandomLife {
public:
    RandomLife(AppWorld& world, std::uint64_t seed) : world_(&world), random_(seed) {}

    std::uint64_t below(std::uint64_t bound) { return random_.below(bound); }

    void step()
    {
        AppModel& app = world_->app();
        switch (below(9)) {
        case 0:
            app.select(below(3) == 0 ? std::nullopt : std::optional{textForBus()});
            break;
        case 1:
            app.setUpdateStatus({perhaps(), perhaps(), below(2) == 0});
            break;
        case 2:
            numbersChange();
            world_->browser.profileOfNextSignIn = profile();
            app.signIn();
            break;
        case 3:
            app.signOut(profile());
            break;
        case 4:
            app.requestRefresh();
            break;
        case 5:
            numbersChange();
            world_->time.advance(std::chrono::seconds(below(400)));
            break;
        case 6:
            world_->browser.wrongState = below(2) == 0 ? "x" : "";
            break;
        case 7:
            world_->roost.latency = [wait = std::chrono::seconds(below(20))] { return wait; };
            break;
        default:
            world_->roost.revoke(profile());
            break;
        }
    }

private:
    std::string profile() { return "p" + std::to_string(below(4)); }

    std::string textForBus()
    {
        std::string text = random_.text();
        std::erase(text, '\0');
        return BusValues::canCross(text) ? text : "x" + text;
    }

    std::optional<std::string> perhaps()
    {
        return below(2) == 0 ? std::nullopt : std::optional{textForBus()};
    }

    void numbersChange()
    {
        const std::string id = profile();
        RoostSnapshot numbers = random_.snapshot();
        numbers.profile.id = id;
        world_->roost.profiles.insert_or_assign(id, numbers);
    }

    AppWorld* world_;
    RandomSnapshot random_;
};

class ModelProxyLaw : public testing::TestWithParam<std::uint64_t>, protected ModelOnBus {};

TEST_P(ModelProxyLaw, SaysWhatTheAppSaysAfterAnything)
{
    RoostStoreFile file = RandomSnapshot(GetParam()).storeFile();
    for (RoostAccountRecord& account : file.accounts) {
        // The one that comes first is selected when the one before signs out.
        account.profileId = BusValues::canCross(account.profileId) ? account.profileId : "odd";
    }
    ASSERT_TRUE(world.store.write(file));
    world.signInBefore("p0");
    startOnBus();
    ModelProxy proxy(bus().address());
    Pending connecting(proxy.connectToApp());
    RandomLife life(world, GetParam());
    for (int round = 0; round < 25; ++round) {
        for (std::uint64_t steps = life.below(6); steps > 0; --steps) {
            life.step();
            if (life.below(2) == 0) {
                QCoreApplication::processEvents();
            }
        }
        if (life.below(8) == 0) {
            disappear();
            life.step();
            appear();
        }
        if (life.below(2) == 0) {
            const auto agrees = [&] { return proxy.isRunning() && agree(proxy.state(), world.state()); };
            ASSERT_TRUE(runUntil(agrees)) << "round " << round << ": " << proxy.isRunning() << ' '
                                          << difference(proxy.state(), world.state());
        }
    }
    EXPECT_TRUE(runUntil([&] { return proxy.isRunning() && agree(proxy.state(), world.state()); }));
    static_cast<void>(connecting.get());
}

INSTANTIATE_TEST_SUITE_P(Seeds, ModelProxyLaw, testing::Range(std::uint64_t{1}, std::uint64_t{13}));

} // namespace
} // namespace roost::test
