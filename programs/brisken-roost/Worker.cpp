#include "programs/brisken-roost/Worker.h"

#include "model/Pause.h"
#include "platform/SystemBootTime.h"

namespace roost {

namespace {

constexpr std::chrono::milliseconds step{100};

} // namespace

QCoro::Task<std::expected<Worker, std::string>> findWorker(WorkerSearch search, std::stop_token stop)
{
    const auto lock = std::make_shared<InstanceLock>(search.lockFile);
    const auto app = std::make_shared<ModelProxy>(search.busAddresses);
    const auto bootTime = systemBootTime();
    const auto deadline = bootTime() + search.patience;
    while (!stop.stop_requested()) {
        if (lock->take(InstanceLock::Kind::shared)) {
            co_return Worker{nullptr, lock};
        }
        auto connecting = app->connectToApp();
        const bool isThere = co_await connecting;
        auto identifying = app->identify();
        const auto identity = co_await identifying;
        // The name may be that of an app over other data.
        if (isThere && identity && identity->sharedFolder.toStdString() == search.sharedFolder.string()) {
            if (identity->baseURL == search.baseURL.toString(QUrl::FullyEncoded)) {
                co_return Worker{app, nullptr};
            }
            co_return std::unexpected("The running app is connected to " + identity->baseURL.toStdString() +
                                      " and keeps its numbers in the same folder.");
        }
        if (bootTime() >= deadline) {
            co_return std::unexpected(
                std::string("Brisken Roost is running, but does not answer on the session bus."));
        }
        auto pausing = pauseOnEventLoop(step, stop);
        co_await pausing;
    }
    co_return std::unexpected(std::string("Stopped."));
}

} // namespace roost
