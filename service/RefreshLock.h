#pragma once

#include <QCoro/QCoroTask>

#include <memory>
#include <stop_token>
#include <string>

namespace roost {

/// Keeps the processes of one user from refreshing one profile at the same time: a refresh token that is sent
/// twice ends the whole sign-in. Main thread; outlives its tasks.
class RefreshLock {
public:
    /// Held until it is destroyed, or until the process ends, however that comes.
    class Held {
    public:
        virtual ~Held() = default;
    };

    virtual ~RefreshLock() = default;

    /// Waits for the lock of that profile without holding up the event loop. Null when it was stopped, when
    /// it took longer than any refresh takes, or when locks cannot be made here.
    virtual QCoro::Task<std::unique_ptr<Held>> acquire(std::string profileId, std::stop_token stop) = 0;
};

} // namespace roost
