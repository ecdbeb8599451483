#include "programs/brisken-roost/RunCommand.h"

#include "app/AppModel.h"
#include "model/Arrival.h"
#include "platform/AutostartEntry.h"
#include "platform/BootTimePause.h"
#include "platform/BrowserAuthenticator.h"
#include "platform/BrowserLauncher.h"
#include "platform/DesktopNotifications.h"
#include "platform/FreedMemory.h"
#include "platform/IniSettings.h"
#include "platform/SchemeHandler.h"
#include "platform/SystemBootTime.h"
#include "platform/TerminationSignals.h"
#include "present/RoostL10n.h"
#include "programs/brisken-roost/Presence.h"
#include "programs/brisken-roost/SecondStart.h"

#include <QCoreApplication>

namespace roost {

namespace {

/// How long a running app has to answer, or to end: it may be waiting for a token.
constexpr std::chrono::minutes patience{1};

/// The browser step of a sign-in in the running app.
class AppBrowser final : public WebAuthenticating {
public:
    AppBrowser(FileSystem& files, const QProcessEnvironment& environment, CallbackInbox& inbox,
               Presence& presence, BrowserOpener& opener)
        : presence_(presence),
          handler_(files, QCoreApplication::applicationFilePath().toStdString(), environment),
          authenticator_({.opener = opener,
                          .inbox = inbox,
                          .reach = [this](std::stop_token stop) { return reach(std::move(stop)); },
                          .fallback = [](const WebURL&, BrowserAuthenticator::Trouble) {}})
    {
    }

    QCoro::Task<std::expected<std::string, RoostAuthError>> authenticate(WebURL url, QString callbackScheme,
                                                                         std::stop_token stop) override
    {
        return authenticator_.authenticate(std::move(url), std::move(callbackScheme), std::move(stop));
    }

private:
    QCoro::Task<bool> reach(std::stop_token stop)
    {
        auto appearing = presence_.appear();
        co_await appearing;
        auto claiming = handler_.claim(std::move(stop));
        const SchemeHandler::Handler handler = co_await claiming;
        co_return presence_.isReachable() && handler.kind == SchemeHandler::Handler::Kind::ours;
    }

    Presence& presence_;
    SchemeHandler handler_;
    BrowserAuthenticator authenticator_;
};

} // namespace

QCoro::Task<CommandResult> runCompanion(Machine* machine, QUrl base, QProcessEnvironment environment)
{
    const auto interval = machine->refreshInterval();
    if (!interval) {
        co_return failed(ExitCode::usage, interval.error());
    }
    const Arrival<bool> wanted;
    std::stop_source ending;
    const TerminationSignals signals{[wanted, &ending] {
        ending.request_stop();
        wanted.set(true);
    }};
    const auto lock = std::make_shared<InstanceLock>(machine->appLockFile());
    auto starting = startOnce(lock, sessionBusAddresses(environment), patience, ending.get_token());
    const Start start = co_await starting;
    switch (start) {
    case Start::alone:
        break;
    case Start::handedOver:
        co_return CommandResult{ExitCode::fine, {}, "Brisken Roost is running already.\n"};
    case Start::unanswered:
        co_return failed(ExitCode::failure, "Brisken Roost is running, but does not answer.");
    case Start::stopped:
        co_return CommandResult{};
    }
    const AccountServices services = machine->services(base);
    IniSettings settings{machine->settingsFile()};
    CallbackInbox inbox{"briskenroost"};
    Presence presence{environment, inbox, services.now};
    BrowserLauncher launcher{environment};
    AppBrowser browser{machine->files(), environment, inbox, presence, launcher};
    const auto open = [&launcher](const WebURL& url) { launcher.open(url, [](BrowserOpener::Trouble) {}); };
    // The word is looked up when there is something to say: ICU's data for it take more than a megabyte.
    const auto openLabel = [] {
        return QString::fromStdString(RoostL10n::bundle(RoostFormat::system().locale()).text("Open"));
    };
    AutostartEntry loginItem{machine->files(), machine->autostartFolder(),
                             QCoreApplication::applicationFilePath().toStdString(), "run",
                             environment.value(QStringLiteral("XDG_CURRENT_DESKTOP"))};
    loginItem.renew();
    DesktopNotifications center{sessionBusAddresses(environment), openLabel};
    AppModel model{
        {.store = machine->store(),
         .baseURL = base,
         .secrets = services.secrets,
         .oauth = services.oauth,
         .api = services.api,
         .lock = services.lock,
         .planner = {.freshness = std::chrono::hours(3)},
         .ledgerStore = {machine->files(), machine->ledgerFile()},
         .browser = browser,
         .notifications = [&] { return std::make_unique<NotificationService>(center, settings, open); },
         .settings = settings,
         .events = presence,
         .widgets = presence,
         .loginItem = &loginItem,
         .open = open,
         .now = services.now,
         .bootTime = systemBootTime(),
         .pause = pauseOnBootTime,
         .randomBytes = PKCE::systemRandom,
         .format = RoostFormat::system,
         .interval = *interval}};
    presence.show(model, [wanted] { wanted.set(true); });
    // Its records are there at once, and so before anybody can ask for them.
    model.start();
    presence.appear();
    // A bus that was gone is looked for whenever there is something to do anyway.
    QObject::connect(&model.state(), &AppState::isRefreshingChanged, &model.state(),
                     [&presence] { presence.appear(); });
    // Between refreshes the app only waits. Queued, so that the refresh is over with all that it needed.
    QObject::connect(
        &model.state(), &AppState::isRefreshingChanged, &model.state(),
        [&model] {
            if (!model.state().isRefreshing()) {
                giveBackFreedMemory();
            }
        },
        Qt::QueuedConnection);
    const auto coming = wanted.coming();
    co_await coming;
    auto quitting = model.quit();
    co_await quitting;
    auto leaving = presence.quit();
    co_await leaving;
    co_return CommandResult{};
}

} // namespace roost
