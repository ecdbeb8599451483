#pragma once

#include "bus/ModelProxy.h"
#include "platform/InstanceLock.h"

#include <QCoro/QCoroTask>
#include <QString>
#include <QUrl>

#include <chrono>
#include <expected>
#include <filesystem>
#include <memory>
#include <stop_token>
#include <string>

namespace roost {

/// Who does the work of a command about the user's profiles: the app where it runs, otherwise this process.
/// Never both.
struct Worker {
    /// The running app, whose state is known; null where none runs.
    std::shared_ptr<ModelProxy> app;
    /// Where no app runs, keeps it from starting as long as this is held.
    std::shared_ptr<InstanceLock> lock;
};

/// What tells the app apart.
struct WorkerSearch {
    /// The file by which app and commands keep out of each other's way.
    std::filesystem::path lockFile;
    std::filesystem::path sharedFolder;
    QUrl baseURL;
    /// Those of the session bus, as `sessionBusAddresses` gives them.
    QString busAddresses;
    /// How long an app is waited for that starts or ends at the moment.
    std::chrono::milliseconds patience = std::chrono::seconds(5);
};

/// Finds that out; the error is a sentence. A stop ends the search early, with an error.
QCoro::Task<std::expected<Worker, std::string>> findWorker(WorkerSearch search, std::stop_token stop);

} // namespace roost
