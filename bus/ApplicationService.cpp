#include "bus/ApplicationService.h"

#include "bus/BusCall.h"
#include "bus/RoostBus.h"

namespace roost {

namespace {

using Claim = ApplicationService::Claim;

/// D-Bus Specification, "org.freedesktop.DBus.RequestName".
constexpr uint doNotQueue = 4;
constexpr uint primaryOwner = 1;
constexpr uint alreadyOwner = 4;

} // namespace

ApplicationService::ApplicationService(QString addresses, ApplicationAdaptor::Opened opened, Furnish furnish)
    : addresses_(std::move(addresses)),
      opened_(std::move(opened)),
      furnish_(std::move(furnish))
{
}

ApplicationService::~ApplicationService()
{
    if (bus_) {
        // Before the connection closes, which happens on a thread of the bus library and looks at its
        // objects.
        QDBusConnection connection = bus_->get();
        connection.unregisterObject(RoostBus::path);
    }
}

QCoro::Task<Claim> ApplicationService::start(std::chrono::milliseconds timeout, std::stop_token stop)
{
    auto opening = BusConnection::open(addresses_, timeout, stop);
    bus_ = co_await opening;
    if (!bus_) {
        co_return Claim{};
    }
    QDBusConnection connection = bus_->get();
    new ApplicationAdaptor(connection, opened_, this);
    connection.registerObject(RoostBus::path, this);
    if (furnish_) {
        furnish_(connection);
    }
    auto requesting = callBusDaemon(connection, QStringLiteral("RequestName"),
                                    {RoostBus::name, QVariant::fromValue(doNotQueue)}, timeout, stop);
    const QDBusMessage reply = co_await requesting;
    const uint code = reply.arguments().value(0).toUInt();
    if (reply.type() != QDBusMessage::ReplyMessage) {
        co_return Claim{};
    }
    if (code == primaryOwner || code == alreadyOwner) {
        co_return Claim{Claim::Kind::owned, connection.baseService()};
    }
    auto asking = callBusDaemon(connection, QStringLiteral("GetNameOwner"), {RoostBus::name}, timeout, stop);
    const QDBusMessage owner = co_await asking;
    const bool isKnown = owner.type() == QDBusMessage::ReplyMessage;
    co_return Claim{Claim::Kind::taken, isKnown ? owner.arguments().value(0).toString() : QString{}};
}

} // namespace roost
