#pragma once

#include "model/Settings.h"
#include "notify/NotificationCenter.h"
#include "notify/NotificationPlan.h"
#include "present/RoostFormat.h"

#include <QCoro/QCoroTask>
#include <QUrl>

#include <chrono>
#include <functional>
#include <stop_token>
#include <vector>

namespace roost {

/// Brings planned events to the notification center, as far as the user wants them, and opens the page of a
/// notification that the user opens. The center and the settings outlive it; it outlives its tasks. Main
/// thread.
class NotificationService final : private NotificationCenter::Delegate {
public:
    /// Shows a web address to the user.
    using Opener = std::function<void(WebURL)>;

    static constexpr std::chrono::seconds defaultPatience{5};

    /// `patience` is how long the center may take for one answer before that event is given up.
    NotificationService(NotificationCenter& center, const Settings& settings, Opener open,
                        std::chrono::milliseconds patience = defaultPatience);
    ~NotificationService() override;
    NotificationService(const NotificationService&) = delete;
    NotificationService& operator=(const NotificationService&) = delete;

    /// Logs every event, whatever becomes of it, and hands those whose switch is on to the center, one after
    /// another, when this program may notify. Ends when the last one was taken, refused or given up, or
    /// before the next one once `stop` was requested. Nothing is tried again: what was planned counts as
    /// announced. `snapshot` is the one that brought the events.
    QCoro::Task<> deliver(std::vector<PlannedEvent> events, RoostSnapshot snapshot, RoostFormat format,
                          QUrl baseURL, std::stop_token stop = {});

    /// Asks the user whether this program may notify, where that was never asked.
    QCoro::Task<> askForPermission();

private:
    void userOpened(NotificationCenter::UserInfo userInfo) override;

    NotificationCenter* center_;
    const Settings* settings_;
    Opener open_;
    std::chrono::milliseconds patience_;
};

} // namespace roost
