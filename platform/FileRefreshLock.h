#pragma once

#include "service/RefreshLock.h"

#include <chrono>
#include <filesystem>

namespace roost {

/// The `RefreshLock` of this machine: flock(2) on an empty file per profile, so that the system frees it when
/// its holder dies. It counts between two users of one process as well. Files stay, and where one was deleted
/// all the same its successor counts; their names are hashes of the profile ids.
class FileRefreshLock final : public RefreshLock {
public:
    /// Longer than a refresh with all of its time-outs: four requests (metadata, resource, registration,
    /// token) of a minute each, and the keyring's answers, seconds each.
    static constexpr std::chrono::minutes defaultPatience{5};

    /// The files lie in `folder`, which is made for this user alone when it is needed. Who has waited for
    /// `patience` gives up.
    explicit FileRefreshLock(std::filesystem::path folder,
                             std::chrono::milliseconds patience = defaultPatience);

    /// A lock that is free is taken at once. While it is held, asks again every 50 ms. Logs why when locks
    /// cannot be made.
    QCoro::Task<std::unique_ptr<Held>> acquire(std::string profileId, std::stop_token stop) override;

private:
    std::filesystem::path folder_;
    std::chrono::milliseconds patience_;
};

} // namespace roost
