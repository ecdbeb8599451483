#pragma once

#include <QCoro/QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariantList>

#include <chrono>

namespace roost {

/// The answer to `call`, which may be an error: of the other side, of the bus, or that `timeout` has passed.
/// Nothing blocks, and nobody is started for the asking. Main thread.
QCoro::Task<QDBusMessage> callOnBus(QDBusConnection connection, QDBusMessage call,
                                    std::chrono::milliseconds timeout);

/// The same for a method of the bus itself, org.freedesktop.DBus.`method`.
QCoro::Task<QDBusMessage> callBusDaemon(QDBusConnection connection, QString method, QVariantList arguments,
                                        std::chrono::milliseconds timeout);

} // namespace roost
