#pragma once

#include "bus/BusCall.h"
#include "bus/RoostBus.h"
#include "bus/SessionBus.h"
#include "tests/support/Await.h"

#include <QDBusVirtualObject>

#include <functional>

namespace roost::test {

/// Another process on the bus, as far as the bus can tell: a connection of its own.
class BusPeer {
public:
    explicit BusPeer(const QString& address) : bus_(await(BusConnection::open(address, guardTime))) {}

    QDBusConnection connection() const { return bus_->get(); }
    QString uniqueName() const { return connection().baseService(); }

    /// The answer to a call of the bus itself.
    QDBusMessage ask(const QString& method, const QVariantList& arguments) const
    {
        return await(callBusDaemon(connection(), method, arguments, guardTime));
    }

    /// Takes the name of the program, with these flags; the bus's answer.
    uint takeName(uint flags = 4) const
    {
        return ask(QStringLiteral("RequestName"), {RoostBus::name, QVariant::fromValue(flags)})
            .arguments()
            .value(0)
            .toUInt();
    }

    void leaveName() const { ask(QStringLiteral("ReleaseName"), {RoostBus::name}); }

    /// Empty when nobody has it.
    QString ownerOfName() const
    {
        const QDBusMessage answer = ask(QStringLiteral("GetNameOwner"), {RoostBus::name});
        return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(0).toString()
                                                           : QString{};
    }

    /// The answer of the program to a call of org.freedesktop.Application.
    QDBusMessage call(const QString& method, const QVariantList& arguments) const
    {
        QDBusMessage message = QDBusMessage::createMethodCall(RoostBus::name, RoostBus::path,
                                                              RoostBus::applicationInterface, method);
        message.setArguments(arguments);
        return await(callOnBus(connection(), message, guardTime));
    }

    /// The answer of the program to a call of its model.
    QDBusMessage callModel(const QString& method, const QVariantList& arguments = {},
                           const QString& interface = RoostBus::modelInterface) const
    {
        return await(startModelCall(method, arguments, interface));
    }

    /// The same, on its way.
    QCoro::Task<QDBusMessage> startModelCall(const QString& method, const QVariantList& arguments = {},
                                             const QString& interface = RoostBus::modelInterface) const
    {
        QDBusMessage message =
            QDBusMessage::createMethodCall(RoostBus::name, RoostBus::modelPath, interface, method);
        message.setArguments(arguments);
        return callOnBus(connection(), message, guardTime);
    }

    /// Asks the bus something and waits for the answer: everything that was sent to this peer before has
    /// come by then.
    void catchUp() const
    {
        ask(QStringLiteral("GetId"), {});
        QCoreApplication::processEvents();
    }

private:
    std::shared_ptr<BusConnection> bus_;
};

/// An object that hands every call to a function, which may answer or not.
class CallCatcher final : public QDBusVirtualObject {
public:
    using Answer = std::function<void(const QDBusMessage&, const QDBusConnection&)>;

    CallCatcher(QDBusConnection connection, Answer answer, const QString& path = RoostBus::path)
        : answer_(std::move(answer))
    {
        connection.registerVirtualObject(path, this);
    }

    QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        answer_(message, connection);
        return true;
    }

private:
    Answer answer_;
};

} // namespace roost::test
