#include "programs/brisken-roost/Presence.h"

#include "bus/RoostBus.h"
#include "model/RefreshSignal.h"
#include "model/RoostLog.h"
#include "platform/InotifyFolderWatcher.h"

#include <utility>

namespace roost {

namespace {

constexpr std::chrono::seconds patience{5};
const QString refreshRequested = QString::fromLatin1(RefreshSignal::notification);

} // namespace

Presence::Presence(const QProcessEnvironment& environment, CallbackInbox& inbox, Clock now)
    : environment_(environment),
      inbox_(inbox),
      now_(std::move(now))
{
}

void Presence::show(AppModel& model, std::function<void()> quit)
{
    adaptor_ = std::make_unique<ModelAdaptor>(model, std::move(quit));
}

QCoro::Task<void> Presence::appear() { return tasks_.add(takeTheName()); }

QCoro::Task<void> Presence::quit()
{
    // The model is about to go.
    adaptor_.reset();
    quitting_.request_stop();
    return tasks_.settled();
}

QCoro::Task<void> Presence::takeTheName()
{
    if (hasName() || std::exchange(isAppearing_, true)) {
        co_return;
    }
    listener_.reset();
    keyring_.reset();
    // The former one goes before, since its socket is in the way of the next.
    receiver_.reset();
    auto receiver =
        std::make_unique<CallbackReceiver>(environment_, inbox_, [this](const QDBusConnection& connection) {
            if (adaptor_) {
                adaptor_->attach(connection);
            }
        });
    auto opening = receiver->open(patience, quitting_.get_token());
    doors_ = co_await opening;
    receiver_ = std::move(receiver);
    isAppearing_ = false;
    if (adaptor_ && doors_.bus != ApplicationService::Claim::Kind::owned) {
        adaptor_->detach();
    }
    listen();
    if (!quitting_.stop_requested()) {
        say();
    }
}

void Presence::say()
{
    using Kind = ApplicationService::Claim::Kind;
    if (std::exchange(said_, doors_.bus) == doors_.bus) {
        return;
    }
    switch (doors_.bus) {
    case Kind::owned:
        qCInfo(RoostLog::sync, "on the session bus again");
        break;
    case Kind::taken:
        qCWarning(RoostLog::sync, "another program has this one's name on the session bus");
        break;
    case Kind::noBus:
        qCWarning(RoostLog::sync, "no session bus, going on without it");
        break;
    }
}

bool Presence::isThere() const
{
    return receiver_ && receiver_->bus() && receiver_->bus()->get().isConnected();
}

void Presence::listen()
{
    if (isThere() && observer_ && !listener_) {
        listener_ = std::make_unique<CrossProcessNotification::Listener>(
            receiver_->bus()->get(), refreshRequested, observer_->refreshRequested);
        keyring_ = std::make_unique<KeyringWatch>(receiver_->bus()->get(), observer_->secretsChanged);
    }
}

void Presence::observe(Observer observer)
{
    observer_ = std::move(observer);
    wake_ = std::make_unique<SystemWake>(systemBusAddresses(environment_), observer_->woke);
    listen();
}

std::unique_ptr<FolderWatcher> Presence::watch(std::filesystem::path folder, std::function<void()> onChange)
{
    return std::make_unique<InotifyFolderWatcher>(std::move(folder), std::move(onChange));
}

void Presence::reloadAll()
{
    if (isThere()) {
        CrossProcessNotification::post(receiver_->bus()->get(), RoostBus::timelinesReloaded, now_());
    }
}

} // namespace roost
