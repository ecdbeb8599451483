#include "platform/BootTimePause.h"

#include "model/Arrival.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <QSocketNotifier>

#include <algorithm>
#include <cmath>

namespace roost {

namespace {

/// Closed with its scope.
class Timer {
public:
    Timer() : descriptor_(::timerfd_create(CLOCK_BOOTTIME, TFD_CLOEXEC | TFD_NONBLOCK)) {}
    ~Timer()
    {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    int descriptor() const { return descriptor_; }

    bool start(std::chrono::duration<double> length)
    {
        // Some centuries are as good as for ever; zero would be never.
        const double seconds = std::clamp(length.count(), 1e-9, 1e10);
        itimerspec setting{};
        setting.it_value.tv_sec = static_cast<time_t>(seconds);
        setting.it_value.tv_nsec = static_cast<long>((seconds - std::floor(seconds)) * 1e9);
        return descriptor_ >= 0 && ::timerfd_settime(descriptor_, 0, &setting, nullptr) == 0;
    }

private:
    int descriptor_;
};

} // namespace

QCoro::Task<void> pauseOnBootTime(std::chrono::duration<double> length, std::stop_token stop)
{
    Timer timer;
    if (!timer.start(length)) {
        auto pausing = pauseOnEventLoop(length, stop);
        co_await pausing;
        co_return;
    }
    const Arrival<bool> over;
    QSocketNotifier notifier(timer.descriptor(), QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [&notifier, over] {
        notifier.setEnabled(false);
        over.set(true);
    });
    const std::stop_callback hurry(stop, [over] { over.set(true); });
    const auto coming = over.coming();
    co_await coming;
}

} // namespace roost
