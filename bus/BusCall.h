#pragma once

#include <QCoro/QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariantList>

#include <chrono>
#include <stop_token>

namespace roost {

/// Whether the bus may start the other side for a call, where the system says how.
enum class Starting { nobody, service };

/// The answer to `call`, which may be an error: of the other side, of the bus, or that `timeout` has passed.
/// An invalid message soon after a stop. Nothing blocks. Main thread.
QCoro::Task<QDBusMessage> callOnBus(QDBusConnection connection, QDBusMessage call,
                                    std::chrono::milliseconds timeout, std::stop_token stop = {},
                                    Starting starting = Starting::nobody);

/// The same for a method of the bus itself, org.freedesktop.DBus.`method`.
QCoro::Task<QDBusMessage> callBusDaemon(QDBusConnection connection, QString method, QVariantList arguments,
                                        std::chrono::milliseconds timeout, std::stop_token stop = {});

/// Sends `answer` to whoever made `call`, unless no answer is wanted.
void answerOnBus(const QDBusConnection& connection, const QDBusMessage& call, const QDBusMessage& answer);

} // namespace roost
