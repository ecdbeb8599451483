#include "bus/RefreshRoostIntent.h"

#include "bus/BusCall.h"
#include "bus/CrossProcessNotification.h"
#include "bus/SessionBus.h"
#include "model/RefreshSignal.h"

namespace roost::RefreshRoostIntent {

QCoro::Task<bool> perform(WidgetStore store, Date now, QString busAddresses,
                          std::chrono::milliseconds timeout)
{
    auto opening = BusConnection::open(std::move(busAddresses), timeout);
    const std::shared_ptr<BusConnection> bus = co_await opening;
    const bool isWritten = RefreshSignal::request(store, now, [&bus](Date at) {
        if (bus) {
            CrossProcessNotification::post(bus->get(), QString::fromLatin1(RefreshSignal::notification), at);
        }
    });
    if (bus) {
        // What was sent before is with the bus when it answers this.
        auto asking = callBusDaemon(bus->get(), QStringLiteral("GetId"), {}, timeout);
        co_await asking;
    }
    co_return isWritten;
}

} // namespace roost::RefreshRoostIntent
