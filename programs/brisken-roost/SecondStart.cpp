#include "programs/brisken-roost/SecondStart.h"

#include "bus/ApplicationClient.h"
#include "model/Pause.h"
#include "model/RoostLog.h"
#include "platform/SystemBootTime.h"

namespace roost {

namespace {

using Kind = InstanceLock::Kind;

constexpr std::chrono::milliseconds step{100};
constexpr std::chrono::seconds answerTime{5};

} // namespace

QCoro::Task<Start> startOnce(std::shared_ptr<InstanceLock> lock, QString busAddresses,
                             std::chrono::milliseconds patience, std::stop_token stop)
{
    const auto bootTime = systemBootTime();
    const auto deadline = bootTime() + patience;
    bool hasSaid = false;
    while (!stop.stop_requested()) {
        if (lock->take(Kind::exclusive)) {
            co_return Start::alone;
        }
        // Commands share it, an app does not.
        if (lock->take(Kind::shared)) {
            lock->release();
            if (!std::exchange(hasSaid, true)) {
                qCInfo(RoostLog::console,
                       "Brisken Roost starts when the commands that are under way have ended");
            }
        } else {
            auto activating = activateOnBus(busAddresses, answerTime);
            const Handover handover = co_await activating;
            if (handover == Handover::taken || handover == Handover::noWay) {
                co_return Start::handedOver;
            }
            // It is about to be there, or to end.
            if (bootTime() >= deadline) {
                co_return Start::unanswered;
            }
        }
        auto pausing = pauseOnEventLoop(step, stop);
        co_await pausing;
    }
    co_return Start::stopped;
}

} // namespace roost
