#include "model/Pause.h"

#include "model/Arrival.h"

#include <QTimer>

#include <algorithm>
#include <cmath>
#include <limits>

namespace roost {

QCoro::Task<void> pauseOnEventLoop(std::chrono::duration<double> length, std::stop_token stop)
{
    const Arrival<bool> over;
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &timer, [over] { over.set(true); });
    timer.start(static_cast<int>(
        std::clamp(std::ceil(length.count() * 1000), 0.0, double{std::numeric_limits<int>::max()})));
    const std::stop_callback hurry(stop, [over] { over.set(true); });
    const auto coming = over.coming();
    co_await coming;
}

} // namespace roost
