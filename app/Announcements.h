#pragma once

#include "app/TaskGroup.h"
#include "model/Clock.h"
#include "notify/AnnouncedLedgerStore.h"
#include "notify/NotificationPlanner.h"
#include "notify/NotificationService.h"

#include <QCoro/QCoroTask>
#include <QUrl>

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <system_error>
#include <vector>

namespace roost {

/// What the app notices in the numbers: plans, remembers in the ledger, and has delivered. Belongs to
/// `AppModel`; main thread; outlives its tasks.
class Announcements {
public:
    /// How many keys the ledger keeps.
    static constexpr std::size_t kept = 600;

    struct Parts {
        NotificationPlanner planner;
        AnnouncedLedgerStore ledgerStore;
        /// Makes the way to the user, when there is the first thing to tell.
        std::function<std::unique_ptr<NotificationService>()> service;
        /// How numbers are written, as the user wants them now.
        std::function<RoostFormat()> format;
        QUrl baseURL;
        Clock now;
    };

    /// Reads the ledger.
    explicit Announcements(Parts parts);
    Announcements(const Announcements&) = delete;
    Announcements& operator=(const Announcements&) = delete;

    /// Remembers, on the disk before it returns, what `current` tells after `previous`. The events that are
    /// due.
    std::vector<PlannedEvent> note(const std::string& profileId, const std::optional<RoostSnapshot>& previous,
                                   const RoostSnapshot& current);

    /// Tries once more to write a ledger that could not be written the last time.
    void saveUnsaved();

    /// Has them delivered in their order, after those that are on their way. `snapshot` brought them.
    void deliver(std::vector<PlannedEvent> events, RoostSnapshot snapshot);

    /// Asks the user for the permission to notify where that was never asked. In its own time. Not after
    /// `quit`.
    void askForPermission();

    /// Ends when nothing is being delivered any more; what has not begun by then is left out.
    QCoro::Task<void> quit();

private:
    struct Delivery {
        std::vector<PlannedEvent> events;
        RoostSnapshot snapshot;
    };

    void save();
    NotificationService& service();
    QCoro::Task<void> deliverAll();

    Parts parts_;
    AnnouncedLedger ledger_;
    /// Why the ledger on the disk is older than this one; nothing when it is not.
    std::error_code unsaved_;
    std::unique_ptr<NotificationService> service_;
    std::deque<Delivery> due_;
    bool isDelivering_ = false;
    std::stop_source stopping_;
    TaskGroup tasks_;
};

} // namespace roost
