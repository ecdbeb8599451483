#include "bus/ModelProxy.h"

#include "bus/BusCall.h"
#include "bus/BusValues.h"
#include "bus/ModelProperties.h"
#include "bus/RoostBus.h"
#include "model/Arrival.h"

#include <QDBusArgument>

#include <deque>
#include <utility>

namespace roost {

namespace {

const QString busName = QStringLiteral("org.freedesktop.DBus");
constexpr std::chrono::seconds patience{5};

QDBusMessage callOf(const QString& app, const QString& interface, const QString& method,
                    const QVariantList& arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(app, RoostBus::modelPath, interface, method);
    call.setArguments(arguments);
    return call;
}

} // namespace

/// What the tasks share with the proxy.
struct ModelProxy::Link {
    /// Null when it has gone.
    ModelProxy* owner;
    /// Null before the first and after the last word of the bus.
    std::shared_ptr<BusConnection> bus;
    /// The unique name of who has the program's name; empty while nobody has.
    QString app;
    /// How often the bus has said who that is.
    int ownersTold = 0;
    /// Whether the state is being read. Only one reading is on its way at a time, and whatever is told
    /// meanwhile leads to the next: answers are handled later than signals that came after them.
    bool isReading = false;
    bool isStale = false;
    /// Set when a reading that began after they came has ended.
    std::deque<Arrival<bool>> readers;
};

ModelProxy::ModelProxy(QString addresses)
    : addresses_(std::move(addresses)),
      link_(std::make_shared<Link>(this))
{
}

ModelProxy::~ModelProxy()
{
    listen(Listening::ends);
    link_->owner = nullptr;
}

QCoro::Task<bool> ModelProxy::connectToApp() { return connected(link_, addresses_); }

QCoro::Task<bool> ModelProxy::connected(std::shared_ptr<Link> link, QString addresses)
{
    if (!link->bus) {
        auto opening = BusConnection::open(addresses, patience);
        std::shared_ptr<BusConnection> bus = co_await opening;
        if (!bus || link->owner == nullptr) {
            co_return false;
        }
        // Another call may have been quicker.
        if (!link->bus) {
            link->bus = std::move(bus);
            link->owner->listen(Listening::begins);
        }
    }
    auto finding = findApp(link);
    co_await finding;
    if (link->owner == nullptr || !link->bus) {
        co_return false;
    }
    const Arrival<bool> read;
    link->readers.push_back(read);
    link->owner->read();
    const auto coming = read.coming();
    co_await coming;
    const bool isThere = link->owner != nullptr && link->owner->isRunning_;
    co_return isThere;
}

/// Before the connection closes it stops: the bus library closes on a thread of its own, and looks there at
/// whoever listens still, who may be gone by then.
void ModelProxy::listen(Listening listening)
{
    if (!link_->bus) {
        return;
    }
    QDBusConnection connection = link_->bus->get();
    const auto set = [&](const QString& path, const QString& interface, const QString& signal,
                         const QStringList& arguments, const QString& signature, const char* slot) {
        // By the names of the interfaces alone: for the name of a service the bus library asks who has it,
        // and waits.
        if (listening == Listening::begins) {
            connection.connect({}, path, interface, signal, arguments, signature, this, slot);
        } else {
            connection.disconnect({}, path, interface, signal, arguments, signature, this, slot);
        }
    };
    set(RoostBus::modelPath, RoostBus::propertiesInterface, QStringLiteral("PropertiesChanged"), {}, {},
        SLOT(changeProperties(QString, QVariantMap, QStringList, QDBusMessage)));
    set(QStringLiteral("/org/freedesktop/DBus"), busName, QStringLiteral("NameOwnerChanged"),
        {RoostBus::name}, QStringLiteral("sss"), SLOT(changeOwner(QString, QString, QString, QDBusMessage)));
    set(QStringLiteral("/org/freedesktop/DBus/Local"), QStringLiteral("org.freedesktop.DBus.Local"),
        QStringLiteral("Disconnected"), {}, {}, SLOT(loseBus()));
}

QCoro::Task<void> ModelProxy::findApp(std::shared_ptr<Link> link)
{
    const int told = link->ownersTold;
    auto asking = callBusDaemon(link->bus->get(), QStringLiteral("GetNameOwner"), {RoostBus::name}, patience);
    const QDBusMessage owner = co_await asking;
    // What the bus has told by itself meanwhile is newer.
    if (told == link->ownersTold) {
        const bool isKnown = owner.type() == QDBusMessage::ReplyMessage;
        link->app = isKnown ? owner.arguments().value(0).toString() : QString{};
    }
}

void ModelProxy::read()
{
    if (link_->isReading) {
        link_->isStale = true;
    } else {
        readUntilFresh(link_);
    }
}

QCoro::Task<void> ModelProxy::readUntilFresh(std::shared_ptr<Link> link)
{
    link->isReading = true;
    do {
        link->isStale = false;
        const std::size_t waiting = link->readers.size();
        const QString app = link->app;
        QDBusMessage everything;
        if (link->bus && !app.isEmpty()) {
            const auto call = callOf(app, RoostBus::propertiesInterface, QStringLiteral("GetAll"),
                                     {RoostBus::modelInterface});
            auto asking = callOnBus(link->bus->get(), call, patience);
            everything = co_await asking;
        }
        if (link->owner != nullptr && link->app == app) {
            link->owner->setRunning(link->owner->take(everything));
            // What was told meanwhile comes later: an app that has always something to tell keeps nobody.
            release(*link, waiting);
        }
    } while (link->isStale && link->owner != nullptr);
    link->isReading = false;
    release(*link, link->readers.size());
}

/// The first so many readers have waited long enough.
void ModelProxy::release(Link& link, std::size_t count)
{
    for (; count > 0; --count) {
        link.readers.front().set(true);
        link.readers.pop_front();
    }
}

/// Whether that is what a running app answers.
bool ModelProxy::take(const QDBusMessage& everything)
{
    if (everything.type() != QDBusMessage::ReplyMessage || everything.signature() != QLatin1String("a{sv}")) {
        return false;
    }
    const auto values = qdbus_cast<QVariantMap>(everything.arguments().at(0));
    for (const auto& [name, property] : ModelProperties::all()) {
        property.take(state_, values.value(name));
    }
    return true;
}

void ModelProxy::changeProperties(const QString& interface, const QVariantMap& changed,
                                  const QStringList& invalidated, const QDBusMessage& message)
{
    if (interface != RoostBus::modelInterface || message.service() != link_->app) {
        return;
    }
    if (link_->isReading || !isRunning_ || !invalidated.isEmpty()) {
        read();
        return;
    }
    for (auto value = changed.begin(); value != changed.end(); ++value) {
        if (const ModelProperties::Property* const property = ModelProperties::find(value.key())) {
            property->take(state_, value.value());
        }
    }
}

void ModelProxy::changeOwner(const QString& name, const QString& /*before*/, const QString& now,
                             const QDBusMessage& message)
{
    if (message.service() != busName || name != RoostBus::name) {
        return;
    }
    ++link_->ownersTold;
    if (now == link_->app) {
        return;
    }
    link_->app = now;
    setRunning(false);
    read();
}

void ModelProxy::loseBus()
{
    listen(Listening::ends);
    link_->bus.reset();
    ++link_->ownersTold;
    link_->app.clear();
    setRunning(false);
}

void ModelProxy::setRunning(bool isRunning)
{
    if (std::exchange(isRunning_, isRunning) != isRunning) {
        Q_EMIT isRunningChanged();
    }
}

QCoro::Task<QDBusMessage> ModelProxy::ask(std::shared_ptr<Link> link, QString method, QVariantList arguments,
                                          std::chrono::milliseconds timeout)
{
    QDBusMessage answer;
    if (link->bus) {
        const auto call = callOf(RoostBus::name, RoostBus::modelInterface, method, arguments);
        auto calling = callOnBus(link->bus->get(), call, timeout);
        answer = co_await calling;
    }
    co_return answer;
}

} // namespace roost
