#include "model/RefreshSignal.h"
#include "tests/app/AppSimulation.h"

namespace roost::test {

namespace {

using namespace std::chrono_literals;
using Kind = SimulatedWorld::Kind;

QCoro::Task<void> signInOf(AppModel* app)
{
    auto signingIn = app->signIn();
    co_await signingIn;
}

} // namespace

std::string AppSimulation::anyProfile() { return "p" + std::to_string(1 + dice_.below(4)); }

void AppSimulation::userActs()
{
    switch (dice_.below(10)) {
    case 0:
    case 1:
        world_.app->requestRefresh();
        if (!isQuitting_ && dice_.isOneIn(2)) {
            live(dice_.between(0ms, 3s));
            world_.app->requestRefresh();
        }
        break;
    case 2:
        world_.begin(Kind::asks, world_.app->refreshed());
        break;
    case 3:
    case 4:
        widgetAsks();
        break;
    case 5:
        userSelects();
        break;
    case 6:
        userSignsOut();
        break;
    case 7:
        world_.app->openRoost();
        static_cast<void>(world_.app->content(world_.time.now()));
        break;
    default:
        userSignsIn();
    }
}

void AppSimulation::userSignsIn()
{
    ++census_.signIns;
    if (std::holds_alternative<SignInState::InProgress>(world_.app->state().signInState())) {
        if (dice_.isOneIn(2)) {
            world_.app->cancelSignIn();
        } else {
            world_.begin(Kind::changes, signInOf(world_.app.get()));
        }
        return;
    }
    const std::string profileId = anyProfile();
    ModelRoost::Browser& browser = world_.browser;
    browser.hesitation = dice_.between(0ms, dice_.isOneIn(10) ? 10min : 1min);
    browser.wrongState = dice_.isOneIn(10) ? "x" : "";
    browser.profileOfNextSignIn.reset();
    if (!dice_.isOneIn(4)) {
        world_.roost.profiles.emplace(profileId, numbersOf(profileId, world_.trueTime()));
        browser.profileOfNextSignIn = profileId;
    }
    world_.begin(Kind::changes, signInOf(world_.app.get()));
}

void AppSimulation::userSignsOut()
{
    const std::string profileId = anyProfile();
    laws_.userSignsOut(profileId);
    world_.begin(Kind::changes, world_.app->signOut(profileId));
    if (dice_.isOneIn(4)) {
        // On second thought.
        userSignsIn();
    }
}

void AppSimulation::userSelects()
{
    world_.app->select(dice_.isOneIn(5) ? std::nullopt : std::optional{anyProfile()});
}

/// By a note in the folder and a word to whoever listens, of which either can get lost.
void AppSimulation::widgetAsks()
{
    const bool isHeard = !dice_.isOneIn(4);
    RefreshSignal::request(world_.store, world_.time.now(), [this, isHeard](Date at) {
        if (isHeard && world_.events.observer.refreshRequested) {
            world_.events.observer.refreshRequested(at);
        }
    });
    for (std::size_t i = dice_.below(4); i > 0 && world_.events.folderChanged; --i) {
        world_.events.folderChanged();
    }
}

} // namespace roost::test
