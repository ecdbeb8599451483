#pragma once

#include "app/SystemEvents.h"
#include "app/TaskGroup.h"
#include "app/WidgetTimelines.h"
#include "bus/CrossProcessNotification.h"
#include "bus/ModelAdaptor.h"
#include "platform/CallbackInbox.h"
#include "platform/CallbackReceiver.h"
#include "platform/KeyringWatch.h"
#include "platform/SystemWake.h"

#include <QCoro/QCoroTask>
#include <QProcessEnvironment>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace roost {

/// The running app among the other processes of the session: its name and model on the session bus, the
/// callbacks of sign-ins, words from widgets and to them, the system's wake-ups, the keyring's coming. Goes
/// on without a bus, and comes back to one that was gone; what has changed there is logged once.
///
/// A bus that goes away ends nothing: it can be restarted under a session that lives on, and the numbers are
/// wanted all the same. A session that ends says so by a signal (SIGTERM from the user's service manager or
/// the desktop, SIGHUP from a terminal). Main thread; outlives its tasks.
class Presence final : public SystemEvents, public WidgetTimelines {
public:
    /// `inbox` outlives this.
    Presence(const QProcessEnvironment& environment, CallbackInbox& inbox, Clock now);

    /// Has `model` be found on the bus, as soon as there is one: before `appear`. `quit` is what others may
    /// ask for.
    void show(AppModel& model, std::function<void()> quit);

    /// Takes the name on the bus where there is one and it is free; nothing when that is so already. Called
    /// again and again, since nobody tells when a bus comes or a name becomes free. Bounded in time.
    QCoro::Task<void> appear();

    /// Leaves the bus, and ends when nothing of this is under way any more. The model may go then.
    QCoro::Task<void> quit();

    /// Whether callbacks of the browser find their way here.
    bool isReachable() const { return doors_.isOpen(); }

    void observe(Observer observer) override;
    std::unique_ptr<FolderWatcher> watch(std::filesystem::path folder,
                                         std::function<void()> onChange) override;
    void reloadAll() override;

private:
    QCoro::Task<void> takeTheName();
    bool isThere() const;
    bool hasName() const { return isThere() && doors_.bus == ApplicationService::Claim::Kind::owned; }
    void say();
    void listen();

    QProcessEnvironment environment_;
    CallbackInbox& inbox_;
    Clock now_;
    std::unique_ptr<ModelAdaptor> adaptor_;
    std::unique_ptr<CallbackReceiver> receiver_;
    CallbackReceiver::Doors doors_;
    /// What is known to whoever reads the log.
    ApplicationService::Claim::Kind said_ = ApplicationService::Claim::Kind::owned;
    bool isAppearing_ = false;
    std::stop_source quitting_;
    TaskGroup tasks_;
    std::optional<Observer> observer_;
    std::unique_ptr<CrossProcessNotification::Listener> listener_;
    std::unique_ptr<KeyringWatch> keyring_;
    std::unique_ptr<SystemWake> wake_;
};

} // namespace roost
