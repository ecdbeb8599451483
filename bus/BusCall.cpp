#include "bus/BusCall.h"

#include "model/Arrival.h"

#include <QDBusPendingCallWatcher>

namespace roost {

QCoro::Task<QDBusMessage> callOnBus(QDBusConnection connection, QDBusMessage call,
                                    std::chrono::milliseconds timeout, std::stop_token stop,
                                    Starting starting)
{
    call.setAutoStartService(starting == Starting::service);
    const Arrival<QDBusMessage> end;
    QDBusPendingCallWatcher watcher(connection.asyncCall(call, static_cast<int>(timeout.count())));
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &watcher,
                     [end](QDBusPendingCallWatcher* finished) { end.set(finished->reply()); });
    const std::stop_callback onStop(stop, [end] {
        QMetaObject::invokeMethod(QCoreApplication::instance(), [end] { end.set({}); }, Qt::QueuedConnection);
    });
    const auto coming = end.coming();
    QDBusMessage answer = co_await coming;
    co_return answer;
}

QCoro::Task<QDBusMessage> callBusDaemon(QDBusConnection connection, QString method, QVariantList arguments,
                                        std::chrono::milliseconds timeout, std::stop_token stop)
{
    QDBusMessage call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                                       QStringLiteral("/org/freedesktop/DBus"),
                                                       QStringLiteral("org.freedesktop.DBus"), method);
    call.setArguments(arguments);
    auto calling = callOnBus(connection, call, timeout, stop);
    QDBusMessage answer = co_await calling;
    co_return answer;
}

void answerOnBus(const QDBusConnection& connection, const QDBusMessage& call, const QDBusMessage& answer)
{
    if (call.isReplyRequired()) {
        connection.send(answer);
    }
}

} // namespace roost
