#pragma once

#include <QCoro/QCoroTask>
#include <QDBusConnection>
#include <QProcessEnvironment>
#include <QString>

#include <chrono>
#include <memory>
#include <optional>
#include <stop_token>

namespace roost {

/// A connection to a bus, of this object alone; closed when it goes. Main thread.
class BusConnection {
public:
    ~BusConnection();
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;

    /// Stays usable when the bus goes away: calls fail then.
    const QDBusConnection& get() const { return connection_; }

    /// Connects to the first Unix socket that `addresses` (D-Bus Specification, "Server Addresses") names and
    /// behind which a bus answers within `timeout`; null when there is none. Asks whether somebody answers
    /// before it lets the bus library in, which waits for a hung bus without an end. Null soon after a stop.
    static QCoro::Task<std::shared_ptr<BusConnection>>
    open(QString addresses, std::chrono::milliseconds timeout, std::stop_token stop = {});

private:
    explicit BusConnection(QDBusConnection connection) : connection_(std::move(connection)) {}

    QDBusConnection connection_;
};

/// The addresses of the session bus: $DBUS_SESSION_BUS_ADDRESS, or the socket "bus" in $XDG_RUNTIME_DIR.
/// Empty without either: no bus is started for the asking.
QString sessionBusAddresses(const QProcessEnvironment& environment);

/// One Unix socket of a bus.
struct BusSocket {
    QString name;
    /// Whether `name` is a path, and not a name in the kernel's own space.
    bool isPath = true;
    /// The address as it was given, this entry alone.
    QString address;

    bool operator==(const BusSocket&) const = default;
};

/// The Unix sockets among `addresses`, in order; entries of other kinds, and those that cannot be read, are
/// left out.
QList<BusSocket> busSocketsIn(const QString& addresses);

} // namespace roost
