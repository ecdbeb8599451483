#include "programs/brisken-roost/Presence.h"

#include "bus/RoostBus.h"
#include "model/RefreshSignal.h"
#include "platform/InotifyFolderWatcher.h"

#include <utility>

namespace roost {

namespace {

constexpr std::chrono::seconds patience{5};
const QString refreshRequested = QString::fromLatin1(RefreshSignal::notification);

} // namespace

Presence::Presence(QProcessEnvironment environment, CallbackInbox& inbox, Clock now)
    : environment_(std::move(environment)),
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
    const bool hasName = doors_.bus == ApplicationService::Claim::Kind::owned;
    if ((isThere() && hasName) || std::exchange(isAppearing_, true)) {
        co_return;
    }
    listener_.reset();
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
