#include "bus/ApplicationClient.h"

#include "bus/BusCall.h"
#include "bus/RoostBus.h"
#include "bus/SessionBus.h"

namespace roost {

namespace {

QCoro::Task<Handover> callApplication(QString addresses, QString method, QVariantList arguments,
                                      std::chrono::milliseconds timeout)
{
    auto opening = BusConnection::open(addresses, timeout);
    const std::shared_ptr<BusConnection> bus = co_await opening;
    if (!bus) {
        co_return Handover::noWay;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(RoostBus::name, RoostBus::path,
                                                       RoostBus::applicationInterface, method);
    call.setArguments(arguments);
    auto calling = callOnBus(bus->get(), call, timeout);
    const QDBusMessage answer = co_await calling;
    if (answer.type() == QDBusMessage::ReplyMessage) {
        co_return Handover::taken;
    }
    // The answer of the bus to a call that must not start anybody, and to any other.
    if (answer.errorName() == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner") ||
        answer.errorName() == QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown")) {
        co_return Handover::nobody;
    }
    co_return bus->get().isConnected() ? Handover::declined : Handover::noWay;
}

} // namespace

QCoro::Task<Handover> openOnBus(QString addresses, QStringList uris, std::chrono::milliseconds timeout)
{
    return callApplication(std::move(addresses), QStringLiteral("Open"), {uris, QVariantMap{}}, timeout);
}

QCoro::Task<Handover> activateOnBus(QString addresses, std::chrono::milliseconds timeout)
{
    return callApplication(std::move(addresses), QStringLiteral("Activate"), {QVariantMap{}}, timeout);
}

} // namespace roost
