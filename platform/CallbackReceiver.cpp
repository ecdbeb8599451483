#include "platform/CallbackReceiver.h"

#include "bus/ApplicationClient.h"
#include "platform/PrivateFolder.h"

#include <algorithm>
#include <utility>

namespace roost {

CallbackReceiver::CallbackReceiver(const QProcessEnvironment& environment, CallbackInbox& inbox,
                                   ApplicationService::Furnish furnish)
    : inbox_(inbox),
      bus_(
          sessionBusAddresses(environment),
          [this](const QStringList& addresses) {
              return std::ranges::count_if(addresses, [this](const QString& address) {
                         return take(address.toStdString());
                     }) > 0;
          },
          std::move(furnish)),
      environment_(environment)
{
}

QCoro::Task<CallbackReceiver::Doors> CallbackReceiver::open(std::chrono::milliseconds timeout,
                                                            std::stop_token stop)
{
    Doors doors;
    if (const auto folder = privateRuntimeFolder(environment_)) {
        socket_ =
            std::make_unique<CallbackSocket>(*folder, [this](std::string_view text) { return take(text); });
        doors.socket = socket_->listen();
    }
    auto starting = bus_.start(timeout, std::move(stop));
    const ApplicationService::Claim claim = co_await starting;
    doors.bus = claim.kind;
    co_return doors;
}

bool CallbackReceiver::take(std::string_view address)
{
    return inbox_.offer(address) == CallbackInbox::Verdict::taken;
}

QCoro::Task<Handover> handOverCallback(QProcessEnvironment environment, std::string address,
                                       std::chrono::milliseconds timeout)
{
    auto opening = openOnBus(sessionBusAddresses(environment), {QString::fromStdString(address)}, timeout);
    const Handover byBus = co_await opening;
    if (byBus == Handover::taken) {
        co_return byBus;
    }
    const auto folder = privateRuntimeFolder(environment);
    if (!folder) {
        co_return byBus;
    }
    auto sending = sendToCallbackSocket(*folder, address, timeout);
    const Handover bySocket = co_await sending;
    if (bySocket == Handover::nobody && byBus == Handover::declined) {
        // Who declined is more than nobody.
        co_return byBus;
    }
    co_return bySocket;
}

} // namespace roost
