#include "programs/brisken-roost/QuitCommand.h"

#include "model/Pause.h"
#include "platform/InstanceLock.h"
#include "platform/SystemBootTime.h"

namespace roost {

namespace {

constexpr std::chrono::milliseconds step{50};

} // namespace

CommandResult notRunning() { return {ExitCode::fine, {}, "Brisken Roost is not running.\n"}; }

QCoro::Task<CommandResult> runQuit(std::shared_ptr<ModelProxy> app, std::filesystem::path lockFile,
                                   std::chrono::milliseconds patience, std::stop_token stop)
{
    auto quitting = app->quitApp();
    const ModelProxy::Answer answer = co_await quitting;
    if (answer != ModelProxy::Answer::done) {
        co_return failed(ExitCode::failure, "Brisken Roost does not answer.");
    }
    // A token that is being fetched is stored first.
    InstanceLock lock{lockFile};
    const auto bootTime = systemBootTime();
    const auto deadline = bootTime() + patience;
    while (!lock.take(InstanceLock::Kind::shared)) {
        if (stop.stop_requested() || bootTime() >= deadline) {
            co_return failed(ExitCode::failure, "Brisken Roost has not ended yet.");
        }
        auto pausing = pauseOnEventLoop(step, stop);
        co_await pausing;
    }
    co_return CommandResult{};
}

} // namespace roost
