#pragma once

#include "bus/ApplicationService.h"
#include "platform/CallbackInbox.h"
#include "platform/CallbackSocket.h"

#include <QCoro/QCoroTask>
#include <QProcessEnvironment>

#include <chrono>
#include <memory>
#include <stop_token>

namespace roost {

/// The doors through which a second start of the program hands its address to this one: the session bus, and
/// a socket where there is none. What comes in goes to an inbox. Main thread; outlives its tasks.
class CallbackReceiver {
public:
    struct Doors {
        ApplicationService::Claim::Kind bus = ApplicationService::Claim::Kind::noBus;
        CallbackSocket::Standing socket = CallbackSocket::Standing::unusable;

        /// Whether addresses come in at all: who has only the socket is asked when the owner of the name
        /// declines.
        bool isOpen() const
        {
            return bus == ApplicationService::Claim::Kind::owned ||
                   socket == CallbackSocket::Standing::listening;
        }
        /// Another process waits for a callback already.
        bool isAnotherWaiting() const { return socket == CallbackSocket::Standing::busy; }

        bool operator==(const Doors&) const = default;
    };

    /// `inbox` outlives this. `furnish` is `ApplicationService`'s.
    CallbackReceiver(const QProcessEnvironment& environment, CallbackInbox& inbox,
                     ApplicationService::Furnish furnish = {});

    /// Opens both. Once. The bus has the time `timeout` for each step, and none after a stop.
    QCoro::Task<Doors> open(std::chrono::milliseconds timeout, std::stop_token stop = {});

    /// The connection to the session bus that has the program's name, or was too late for it; null without
    /// one.
    const std::shared_ptr<BusConnection>& bus() const { return bus_.bus(); }

private:
    bool take(std::string_view address);

    CallbackInbox& inbox_;
    ApplicationService bus_;
    std::unique_ptr<CallbackSocket> socket_;
    QProcessEnvironment environment_;
};

/// Hands `address` over: by the session bus, and where that brings it to nobody who takes it, by the socket.
/// Each step has the time `timeout`.
QCoro::Task<Handover> handOverCallback(QProcessEnvironment environment, std::string address,
                                       std::chrono::milliseconds timeout);

} // namespace roost
