#include "platform/SystemWake.h"

#include "bus/BusCall.h"

namespace roost {

namespace {

const QString logind = QStringLiteral("org.freedesktop.login1");
constexpr std::chrono::seconds patience{5};

} // namespace

struct SystemWake::Listening {
    /// Null when it has gone.
    SystemWake* owner;
    std::function<void()> woke;
    std::shared_ptr<BusConnection> bus;
};

SystemWake::SystemWake(QString addresses, std::function<void()> woke)
    : listening_(std::make_shared<Listening>(this, std::move(woke), nullptr))
{
    listen(listening_, std::move(addresses));
}

SystemWake::~SystemWake()
{
    listening_->owner = nullptr;
    if (listening_->bus) {
        // Before the connection closes, which happens on a thread of the bus library and looks at listeners.
        QDBusConnection connection = listening_->bus->get();
        connection.disconnect({}, QStringLiteral("/org/freedesktop/login1"),
                              logind + QStringLiteral(".Manager"), QStringLiteral("PrepareForSleep"), this,
                              SLOT(prepareForSleep(bool, QDBusMessage)));
    }
}

QCoro::Task<void> SystemWake::listen(std::shared_ptr<Listening> listening, QString addresses)
{
    auto opening = BusConnection::open(std::move(addresses), patience);
    std::shared_ptr<BusConnection> bus = co_await opening;
    if (!bus || listening->owner == nullptr) {
        co_return;
    }
    listening->bus = std::move(bus);
    QDBusConnection connection = listening->bus->get();
    // By the name of the interface alone: for the name of a service the bus library asks its owner and waits.
    connection.connect({}, QStringLiteral("/org/freedesktop/login1"), logind + QStringLiteral(".Manager"),
                       QStringLiteral("PrepareForSleep"), listening->owner,
                       SLOT(prepareForSleep(bool, QDBusMessage)));
}

void SystemWake::prepareForSleep(bool isAboutToSleep, const QDBusMessage& message)
{
    if (!isAboutToSleep) {
        tellIfGenuine(listening_, message.service());
    }
}

/// Anybody on the machine can send such a signal.
QCoro::Task<void> SystemWake::tellIfGenuine(std::shared_ptr<Listening> listening, QString sender)
{
    auto asking = callBusDaemon(listening->bus->get(), QStringLiteral("GetNameOwner"), {logind}, patience);
    const QDBusMessage owner = co_await asking;
    const bool isGenuine = owner.type() == QDBusMessage::ReplyMessage && owner.arguments().value(0) == sender;
    if (isGenuine && listening->owner != nullptr) {
        listening->woke();
    }
}

QString systemBusAddresses(const QProcessEnvironment& environment)
{
    const QString given = environment.value(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"));
    return given.isEmpty() ? QStringLiteral("unix:path=/var/run/dbus/system_bus_socket") : given;
}

} // namespace roost
