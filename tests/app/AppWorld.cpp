#include "tests/app/AppWorld.h"

#include "service/RefreshTokenKeeper.h"

#include <algorithm>

namespace roost::test {

namespace {

std::string keyOf(const std::string& profileId) { return std::string{refreshTokenPrefix} + profileId; }

} // namespace

AppWorld::AppWorld() = default;

AppWorld::~AppWorld()
{
    if (app_) {
        quit();
    }
}

AppModel& AppWorld::start()
{
    const auto open = [this](const WebURL& url) { opened.push_back(url.text()); };
    app_ = std::make_unique<AppModel>(AppModel::Parts{
        .store = store,
        .baseURL = ModelRoost::baseURL(),
        .secrets = *keyringOfApp,
        .oauth = OAuthClient{ModelRoost::baseURL(), roost.session(), *keyringOfApp, time.clock()},
        .api = WidgetAPI{ModelRoost::baseURL(), roost.session()},
        .lock = lock,
        .planner = {.freshness = std::chrono::hours(3)},
        .ledgerStore = ledgerStore,
        .browser = browser,
        .notifications =
            [this, open] {
                ++notificationServices;
                return std::make_unique<NotificationService>(center, settings, open);
            },
        .settings = settings,
        .events = events,
        .widgets = widgets,
        .loginItem = hasLoginItem ? &loginItem : nullptr,
        .open = open,
        .now = time.clock(),
        .bootTime = time.bootTime(),
        .pause = time.pause(),
        .randomBytes = [](std::size_t count) { return QByteArray(static_cast<qsizetype>(count), '\0'); },
        .format =
            [] { return RoostFormat{{.locale = "en-US", .calendarTimeZone = "UTC", .timeZone = "UTC"}}; }});
    app_->start();
    time.advance(std::chrono::milliseconds{0});
    return *app_;
}

void AppWorld::quit()
{
    Pending ending{app_->quit()};
    for (int seconds = 0; !ending.isDone() && seconds < 600; ++seconds) {
        time.advance(std::chrono::seconds{1});
    }
    EXPECT_TRUE(ending.isDone());
    app_.reset();
}

void AppWorld::signInBefore(const std::string& profileId)
{
    roost.profiles.emplace(profileId, numbersOf(profileId, time.now()));
    secrets.values["client-id|https://roost.test"] = "client";
    secrets.values[keyOf(profileId)] = roost.grant(profileId);
}

void AppWorld::signIn(const std::string& profileId)
{
    roost.profiles.emplace(profileId, numbersOf(profileId, time.now()));
    browser.profileOfNextSignIn = profileId;
    app_->signIn();
    time.advance(std::chrono::milliseconds{0});
}

std::optional<RoostAccountRecord> AppWorld::record(const std::string& profileId) const
{
    const auto file = this->file();
    if (file) {
        const auto found = std::ranges::find(file->accounts, profileId, &RoostAccountRecord::profileId);
        if (found != file->accounts.end()) {
            return *found;
        }
    }
    return std::nullopt;
}

std::string AppWorld::stored(const std::string& profileId)
{
    const auto found = secrets.values.find(keyOf(profileId));
    return found == secrets.values.end() ? "" : found->second;
}

std::vector<std::string> AppWorld::widgetRequests()
{
    std::vector<std::string> found;
    for (const std::string& request : roost.requests()) {
        if (request.starts_with("widget")) {
            found.push_back(request);
        }
    }
    roost.forgetRequests();
    return found;
}

} // namespace roost::test
