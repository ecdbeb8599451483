#include "bus/SessionBus.h"

#include "model/Arrival.h"

#include <unistd.h>

#include <QLocalSocket>
#include <QTimer>
#include <QUrl>

#include <atomic>

namespace roost {

namespace {

/// Whether a bus answers at `bus` within `timeout` and before a stop: says who we are (D-Bus Specification,
/// "Authentication Protocol") and waits for any word.
QCoro::Task<bool> answers(BusSocket bus, std::chrono::milliseconds timeout, std::stop_token stop)
{
    const Arrival<bool> end;
    QLocalSocket socket;
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &timer, [end] { end.set(false); });
    QObject::connect(&socket, &QLocalSocket::errorOccurred, &socket, [end] { end.set(false); });
    QObject::connect(&socket, &QLocalSocket::disconnected, &socket, [end] { end.set(false); });
    QObject::connect(&socket, &QLocalSocket::readyRead, &socket, [end] { end.set(true); });
    QObject::connect(&socket, &QLocalSocket::connected, &socket, [&socket] {
        socket.write(QByteArray(1, '\0') + "AUTH EXTERNAL " + QByteArray::number(::geteuid()).toHex() +
                     "\r\n");
    });
    socket.setSocketOptions(bus.isPath ? QLocalSocket::NoOptions : QLocalSocket::AbstractNamespaceOption);
    timer.start(timeout);
    socket.connectToServer(bus.name);
    const std::stop_callback onStop(stop, [end] {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [end] { end.set(false); }, Qt::QueuedConnection);
    });
    const auto coming = end.coming();
    const bool hasAnswered = co_await coming;
    // The socket says good-bye in its destructor, when nobody wants to hear it any more.
    socket.disconnect();
    co_return hasAnswered;
}

} // namespace

BusConnection::~BusConnection() { QDBusConnection::disconnectFromBus(connection_.name()); }

QCoro::Task<std::shared_ptr<BusConnection>>
BusConnection::open(QString addresses, std::chrono::milliseconds timeout, std::stop_token stop)
{
    static std::atomic<int> opened = 0;
    for (const BusSocket& bus : busSocketsIn(addresses)) {
        if (stop.stop_requested()) {
            break;
        }
        auto answering = answers(bus, timeout, stop);
        if (co_await answering) {
            const QString name = QStringLiteral("roost-%1").arg(++opened);
            const auto connection = QDBusConnection::connectToBus(bus.address, name);
            if (connection.isConnected()) {
                co_return std::shared_ptr<BusConnection>(new BusConnection(connection));
            }
            QDBusConnection::disconnectFromBus(name);
        }
    }
    co_return std::shared_ptr<BusConnection>{};
}

QString sessionBusAddresses(const QProcessEnvironment& environment)
{
    const QString given = environment.value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    if (!given.isEmpty()) {
        return given;
    }
    const QString folder = environment.value(QStringLiteral("XDG_RUNTIME_DIR"));
    if (!folder.startsWith(QLatin1Char('/'))) {
        return {};
    }
    return QStringLiteral("unix:path=") + QString::fromLatin1(QUrl::toPercentEncoding(folder, "/")) +
           QStringLiteral("/bus");
}

QList<BusSocket> busSocketsIn(const QString& addresses)
{
    QList<BusSocket> sockets;
    for (const QString& address : addresses.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        if (!address.startsWith(QLatin1String("unix:"))) {
            continue;
        }
        for (const QString& item : address.sliced(5).split(QLatin1Char(','))) {
            const qsizetype equals = item.indexOf(QLatin1Char('='));
            const QString key = equals < 0 ? QString{} : item.left(equals);
            const bool isPath = key == QLatin1String("path");
            if (isPath || key == QLatin1String("abstract")) {
                const QString name = QUrl::fromPercentEncoding(item.sliced(equals + 1).toLatin1());
                sockets.append({name, isPath, address});
            }
        }
    }
    return sockets;
}

} // namespace roost
