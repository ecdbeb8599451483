#include "tests/app/AppSimulationWorld.h"

#include "service/RefreshTokenKeeper.h"

#include <algorithm>

namespace roost::test {

using namespace std::chrono_literals;

SimulatedWorld::SimulatedWorld(std::uint64_t seed) : dice{seed} {}

SimulatedWorld::~SimulatedWorld()
{
    if (app) {
        freeze();
        bury();
    }
}

void SimulatedWorld::start()
{
    const auto open = [](const WebURL&) {};
    const std::size_t failures = files.failures();
    app = std::make_unique<AppModel>(AppModel::Parts{
        .store = store,
        .baseURL = ModelRoost::baseURL(),
        .secrets = keyring,
        .oauth = OAuthClient{ModelRoost::baseURL(), roost.session(), keyring, time.clock()},
        .api = WidgetAPI{ModelRoost::baseURL(), roost.session()},
        .lock = lock,
        .planner = {.freshness = 3h},
        .ledgerStore = ledgerStore,
        .browser = browser,
        .notifications = [this,
                          open] { return std::make_unique<NotificationService>(center, settings, open); },
        .settings = settings,
        .events = events,
        .widgets = widgets,
        .loginItem = &loginItem,
        .open = open,
        .now = time.clock(),
        .bootTime = time.bootTime(),
        .pause = time.pause(),
        .randomBytes = [](std::size_t count) { return QByteArray(static_cast<qsizetype>(count), '\0'); },
        .format =
            [] { return RoostFormat{{.locale = "en-US", .calendarTimeZone = "UTC", .timeZone = "UTC"}}; }});
    isLedgerForgotten = files.failures() != failures;
    onMade(*app);
    begin(Kind::changes, app->start());
}

SimulatedWorld::Ending SimulatedWorld::quit(const std::function<void()>& meanwhile)
{
    const Pending<void> ending{app->quit()};
    const std::chrono::milliseconds latest = bootTime() + 5min;
    while (!ending.isDone() && !isFrozen_ && bootTime() < latest) {
        time.step(latest - bootTime());
        if (!ending.isDone() && dice.isOneIn(20)) {
            meanwhile();
        }
    }
    if (isFrozen_ || !ending.isDone()) {
        const Ending how = isFrozen_ ? Ending::died : Ending::stuck;
        freeze();
        bury();
        return how;
    }
    onEnding(*app);
    const bool isLeft = isUnderWay();
    clearAway();
    return isLeft ? Ending::stuck : Ending::finished;
}

void SimulatedWorld::freeze()
{
    if (std::exchange(isFrozen_, true)) {
        return;
    }
    files.failAll(std::make_error_code(std::errc::io_error));
    keyring.isFrozen = true;
    center.isFrozen = true;
    settingsWhenFrozen_ = settings.file;
    isLoginItemWhenFrozen_ = loginItem.enabled;
}

void SimulatedWorld::bury()
{
    constexpr int most = 10'000;
    const Pending<void> ending{app->quit()};
    for (int i = 0; i < most && !(ending.isDone() && !isUnderWay()); ++i) {
        time.hurry();
    }
    EXPECT_TRUE(ending.isDone());
    clearAway();
    settings.file = settingsWhenFrozen_;
    loginItem.enabled = isLoginItemWhenFrozen_;
    files.failAll({});
    keyring.isFrozen = false;
    center.isFrozen = false;
    isFrozen_ = false;
}

void SimulatedWorld::clearAway()
{
    events.observer = {};
    events.folderChanged = {};
    app.reset();
    deeds_.clear();
    // Nothing may be left that thinks that the app is there.
    deliverEvents();
    noteLostTokens();
}

/// Whatever was got and could not be kept is gone with the process.
void SimulatedWorld::noteLostTokens()
{
    robbed.clear();
    for (const auto& [key, value] : keyring.items()) {
        if (key.starts_with(refreshTokenPrefix) && roost.isUsedUp(value) && lostTokens.insert(value).second) {
            robbed.insert(key.substr(refreshTokenPrefix.size()));
        }
    }
}

void SimulatedWorld::begin(Kind kind, QCoro::Task<void> deed)
{
    std::erase_if(deeds_, [](const Deed& old) { return old.pending.isDone(); });
    deeds_.push_back({kind, Pending<void>{std::move(deed)}, bootTime()});
}

bool SimulatedWorld::isUnderWay(std::chrono::milliseconds after)
{
    return std::ranges::any_of(
        deeds_, [&](const Deed& deed) { return !deed.pending.isDone() && bootTime() - deed.begun >= after; });
}

bool SimulatedWorld::isChanging() const
{
    return std::ranges::any_of(
        deeds_, [](const Deed& deed) { return deed.kind == Kind::changes && !deed.pending.isDone(); });
}

void SimulatedWorld::signInBefore(const std::string& profileId)
{
    roost.profiles.emplace(profileId, numbersOf(profileId, trueTime()));
    keyring.items()["client-id|https://roost.test"] = "client";
    keyring.items()[std::string{refreshTokenPrefix} + profileId] = roost.grant(profileId);
}

} // namespace roost::test
