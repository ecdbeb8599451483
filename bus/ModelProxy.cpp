#include "bus/ModelProxy.h"

#include "bus/BusCall.h"
#include "bus/ModelProperties.h"
#include "bus/RoostBus.h"

#include <QDBusArgument>
#include <QDBusVariant>

namespace roost {

namespace {

const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
const QString busService = QStringLiteral("org.freedesktop.DBus");
constexpr std::chrono::seconds patience{5};
/// A sign-out asks the keyring, a refresh many profiles.
constexpr std::chrono::minutes longPatience{10};

QDBusMessage modelCall(const QString& interface, const QString& method, const QVariantList& arguments)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(RoostBus::name, RoostBus::modelPath, interface, method);
    call.setArguments(arguments);
    return call;
}

} // namespace

/// What the tasks share with the proxy.
struct ModelProxy::Link {
    /// Null when it has gone.
    ModelProxy* owner;
    std::shared_ptr<BusConnection> bus;
    /// The unique name of the app; empty while there is none.
    QString app;
    /// Raised with each reading of a value that is announced without it.
    int readings = 0;
};

ModelProxy::ModelProxy(QString addresses)
    : addresses_(std::move(addresses)),
      link_(std::make_shared<Link>(this))
{
}

ModelProxy::~ModelProxy() { link_->owner = nullptr; }

QCoro::Task<bool> ModelProxy::connectToApp() { return connected(link_, addresses_); }

QCoro::Task<bool> ModelProxy::connected(std::shared_ptr<Link> link, QString addresses)
{
    auto opening = BusConnection::open(addresses, patience);
    std::shared_ptr<BusConnection> bus = co_await opening;
    if (!bus || link->owner == nullptr) {
        co_return false;
    }
    link->bus = std::move(bus);
    QDBusConnection connection = link->bus->get();
    // By the name of the interface alone: for the name of a service the bus library asks its owner and waits.
    connection.connect({}, RoostBus::modelPath, propertiesInterface, QStringLiteral("PropertiesChanged"),
                       link->owner, SLOT(changeProperties(QString, QVariantMap, QStringList, QDBusMessage)));
    connection.connect(busService, QStringLiteral("/org/freedesktop/DBus"), busService,
                       QStringLiteral("NameOwnerChanged"), {RoostBus::name}, QStringLiteral("sss"),
                       link->owner, SLOT(changeOwner(QString, QString, QString)));
    auto reading = readAll(link);
    const bool isThere = co_await reading;
    co_return isThere;
}

QCoro::Task<bool> ModelProxy::readAll(std::shared_ptr<Link> link)
{
    auto asking = callOnBus(
        link->bus->get(),
        modelCall(propertiesInterface, QStringLiteral("GetAll"), {RoostBus::modelInterface}), patience);
    const QDBusMessage answer = co_await asking;
    if (link->owner == nullptr || answer.type() != QDBusMessage::ReplyMessage ||
        answer.signature() != QLatin1String("a{sv}")) {
        co_return false;
    }
    link->app = answer.service();
    const auto values = qdbus_cast<QVariantMap>(answer.arguments().at(0));
    for (auto value = values.begin(); value != values.end(); ++value) {
        ModelProperties::take(link->owner->state_, value.key(), value.value());
    }
    link->owner->setRunning(true);
    co_return true;
}

QCoro::Task<void> ModelProxy::readOne(std::shared_ptr<Link> link, QString name)
{
    const int reading = ++link->readings;
    auto asking = callOnBus(
        link->bus->get(),
        modelCall(propertiesInterface, QStringLiteral("Get"), {RoostBus::modelInterface, name}), patience);
    const QDBusMessage answer = co_await asking;
    // A later reading brings what is newer.
    if (link->owner == nullptr || reading != link->readings || answer.type() != QDBusMessage::ReplyMessage ||
        answer.signature() != QLatin1String("v")) {
        co_return;
    }
    ModelProperties::take(link->owner->state_, name,
                          answer.arguments().at(0).value<QDBusVariant>().variant());
}

void ModelProxy::changeProperties(const QString& interface, const QVariantMap& changed,
                                  const QStringList& invalidated, const QDBusMessage& message)
{
    if (interface != RoostBus::modelInterface || message.service() != link_->app) {
        return;
    }
    for (auto value = changed.begin(); value != changed.end(); ++value) {
        ModelProperties::take(state_, value.key(), value.value());
    }
    for (const QString& name : invalidated) {
        readOne(link_, name);
    }
}

void ModelProxy::changeOwner(const QString& /*name*/, const QString& /*before*/, const QString& now)
{
    if (now == link_->app) {
        return;
    }
    link_->app.clear();
    setRunning(false);
    if (!now.isEmpty()) {
        readAll(link_);
    }
}

void ModelProxy::setRunning(bool isRunning)
{
    if (isRunning_ != isRunning) {
        isRunning_ = isRunning;
        Q_EMIT isRunningChanged();
    }
}

QCoro::Task<ModelProxy::Answer> ModelProxy::call(std::shared_ptr<Link> link, QString method,
                                                 QVariantList arguments, std::chrono::milliseconds timeout)
{
    if (!link->bus) {
        co_return Answer::failed;
    }
    auto calling =
        callOnBus(link->bus->get(), modelCall(RoostBus::modelInterface, method, arguments), timeout);
    const QDBusMessage answer = co_await calling;
    if (answer.type() == QDBusMessage::ReplyMessage) {
        co_return Answer::done;
    }
    co_return answer.errorName() == RoostBus::noSuchProfile ? Answer::noSuchProfile : Answer::failed;
}

QCoro::Task<ModelProxy::Answer> ModelProxy::requestRefresh(bool wait)
{
    return call(link_, QStringLiteral("RequestRefresh"), {wait}, wait ? longPatience : patience);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::signIn()
{
    return call(link_, QStringLiteral("SignIn"), {}, patience);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::signOut(std::string profileId)
{
    return call(link_, QStringLiteral("SignOut"), {QString::fromStdString(profileId)}, longPatience);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::select(std::string profileId)
{
    return call(link_, QStringLiteral("Select"), {QString::fromStdString(profileId)}, patience);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::openRoost()
{
    return call(link_, QStringLiteral("OpenRoost"), {}, patience);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::quitApp()
{
    return call(link_, QStringLiteral("Quit"), {}, patience);
}

} // namespace roost
