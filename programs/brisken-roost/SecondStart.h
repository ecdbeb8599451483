#pragma once

#include "platform/InstanceLock.h"

#include <QCoro/QCoroTask>
#include <QString>

#include <chrono>
#include <memory>
#include <stop_token>

namespace roost {

/// What becomes of a start of the app.
enum class Start {
    /// The app may run: the lock is its own.
    alone,
    /// It runs already. Where there is a session bus, it was brought to the front.
    handedOver,
    /// One runs that does not answer.
    unanswered,
    stopped,
};

/// Takes `lock` for the app. Waits for commands that are under way, as long as they take; a running app on
/// the bus at `busAddresses` has the time `patience` to answer or to end.
QCoro::Task<Start> startOnce(std::shared_ptr<InstanceLock> lock, QString busAddresses,
                             std::chrono::milliseconds patience, std::stop_token stop);

} // namespace roost
