#include "tests/support/VirtualTime.h"

#include <QAbstractEventDispatcher>

#include <cmath>
#include <utility>

namespace roost::test {

void deliverEvents()
{
    do {
        QCoreApplication::sendPostedEvents();
    } while (QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents));
}

void VirtualTime::advance(std::chrono::milliseconds time)
{
    const std::chrono::milliseconds end = sinceBoot_ + time;
    while (step(end - sinceBoot_)) {
    }
}

bool VirtualTime::step(std::chrono::milliseconds time)
{
    const std::chrono::milliseconds end = sinceBoot_ + time;
    deliverEvents();
    if (pauses_.empty() || pauses_.begin()->first > end) {
        moveTo(end);
        return false;
    }
    const auto due = pauses_.extract(pauses_.begin());
    moveTo(std::max(due.key(), sinceBoot_));
    due.mapped().set(true);
    deliverEvents();
    return true;
}

void VirtualTime::hurry()
{
    deliverEvents();
    for (const auto& [end, over] : std::exchange(pauses_, {})) {
        over.set(true);
    }
    deliverEvents();
}

void VirtualTime::moveTo(std::chrono::milliseconds sinceBoot)
{
    now_ += sinceBoot - sinceBoot_;
    sinceBoot_ = sinceBoot;
}

QCoro::Task<void> VirtualTime::paused(std::chrono::duration<double> length, std::stop_token stop)
{
    const Arrival<bool> over;
    const std::chrono::milliseconds whole{std::llround(std::ceil(length.count() * 1000))};
    const auto place = pauses_.emplace(sinceBoot_ + whole, over);
    const std::stop_callback early(stop, [over] { over.set(false); });
    const auto coming = over.coming();
    const bool isWhole = co_await coming;
    if (!isWhole) {
        pauses_.erase(place);
    }
}

} // namespace roost::test
