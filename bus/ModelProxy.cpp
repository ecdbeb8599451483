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
/// A sign-out asks the keyring, a refresh many profiles, a sign-in the user, who is given ten minutes.
constexpr std::chrono::minutes longPatience{15};

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
    stopListening();
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
            link->owner->listen();
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

void ModelProxy::listen()
{
    // By the names of the interfaces alone: for the name of a service the bus library asks who has it, and
    // waits.
    QDBusConnection connection = link_->bus->get();
    connection.connect({}, RoostBus::modelPath, RoostBus::propertiesInterface,
                       QStringLiteral("PropertiesChanged"), this,
                       SLOT(changeProperties(QString, QVariantMap, QStringList, QDBusMessage)));
    connection.connect({}, QStringLiteral("/org/freedesktop/DBus"), busName,
                       QStringLiteral("NameOwnerChanged"), {RoostBus::name}, QStringLiteral("sss"), this,
                       SLOT(changeOwner(QString, QString, QString, QDBusMessage)));
    connection.connect({}, QStringLiteral("/org/freedesktop/DBus/Local"),
                       QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                       SLOT(loseBus()));
}

/// Before the connection closes: the bus library does that on a thread of its own, and looks there at whoever
/// listens still, who may be gone by then.
void ModelProxy::stopListening()
{
    if (!link_->bus) {
        return;
    }
    QDBusConnection connection = link_->bus->get();
    connection.disconnect({}, RoostBus::modelPath, RoostBus::propertiesInterface,
                          QStringLiteral("PropertiesChanged"), this,
                          SLOT(changeProperties(QString, QVariantMap, QStringList, QDBusMessage)));
    connection.disconnect({}, QStringLiteral("/org/freedesktop/DBus"), busName,
                          QStringLiteral("NameOwnerChanged"), {RoostBus::name}, QStringLiteral("sss"), this,
                          SLOT(changeOwner(QString, QString, QString, QDBusMessage)));
    connection.disconnect({}, QStringLiteral("/org/freedesktop/DBus/Local"),
                          QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                          SLOT(loseBus()));
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
    stopListening();
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

ModelProxy::Answer ModelProxy::meaningOf(const QDBusMessage& answer)
{
    if (answer.type() == QDBusMessage::ReplyMessage) {
        return Answer::done;
    }
    return answer.errorName() == RoostBus::noSuchProfile ? Answer::noSuchProfile : Answer::failed;
}

QCoro::Task<ModelProxy::Answer> ModelProxy::call(std::shared_ptr<Link> link, QString method,
                                                 QVariantList arguments, std::chrono::milliseconds timeout)
{
    auto asking = ask(link, method, arguments, timeout);
    const QDBusMessage answer = co_await asking;
    co_return meaningOf(answer);
}

QCoro::Task<std::expected<std::optional<std::string>, ModelProxy::Answer>>
ModelProxy::callForText(std::shared_ptr<Link> link, QString method, QVariantList arguments)
{
    auto asking = ask(link, method, arguments, longPatience);
    const QDBusMessage answer = co_await asking;
    const auto text = BusValues::received<std::optional<std::string>>(answer.arguments().value(0));
    if (meaningOf(answer) != Answer::done || !text) {
        co_return std::unexpected(Answer::failed);
    }
    co_return *text;
}

QCoro::Task<ModelProxy::Answer> ModelProxy::callAbout(const std::string& profileId, QString method,
                                                      std::chrono::milliseconds timeout)
{
    if (!BusValues::canCross(profileId)) {
        // What arrives would be another's.
        return []() -> QCoro::Task<Answer> { co_return Answer::noSuchProfile; }();
    }
    return call(link_, std::move(method), {QString::fromStdString(profileId)}, timeout);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::requestRefresh(bool wait)
{
    return call(link_, QStringLiteral("RequestRefresh"), {wait}, wait ? longPatience : patience);
}

QCoro::Task<std::expected<std::optional<std::string>, ModelProxy::Answer>> ModelProxy::signIn()
{
    return callForText(link_, QStringLiteral("SignIn"), {true});
}

QCoro::Task<std::optional<std::string>> ModelProxy::signInAddress() { return addressOf(link_); }

QCoro::Task<std::optional<std::string>> ModelProxy::addressOf(std::shared_ptr<Link> link)
{
    auto asking = callForText(link, QStringLiteral("SignInAddress"), {});
    const auto address = co_await asking;
    co_return address ? *address : std::nullopt;
}

QCoro::Task<ModelProxy::Answer> ModelProxy::cancelSignIn()
{
    return call(link_, QStringLiteral("CancelSignIn"), {}, patience);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::signOut(std::string profileId)
{
    return callAbout(profileId, QStringLiteral("SignOut"), longPatience);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::select(std::string profileId)
{
    return callAbout(profileId, QStringLiteral("Select"), patience);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::openRoost()
{
    return call(link_, QStringLiteral("OpenRoost"), {}, patience);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::checkForUpdates()
{
    return call(link_, QStringLiteral("CheckForUpdates"), {}, patience);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::installAndRestart()
{
    return call(link_, QStringLiteral("InstallAndRestart"), {}, patience);
}

QCoro::Task<std::optional<ModelProxy::Identity>> ModelProxy::identify() { return identityOf(link_); }

QCoro::Task<std::optional<ModelProxy::Identity>> ModelProxy::identityOf(std::shared_ptr<Link> link)
{
    auto asking = ask(link, QStringLiteral("Identify"), {}, patience);
    const QDBusMessage answer = co_await asking;
    if (meaningOf(answer) != Answer::done || answer.signature() != QLatin1String("ss")) {
        co_return std::nullopt;
    }
    co_return Identity{answer.arguments().at(0).toString(), answer.arguments().at(1).toString()};
}

QCoro::Task<ModelProxy::Answer> ModelProxy::quitApp()
{
    return call(link_, QStringLiteral("Quit"), {}, patience);
}

} // namespace roost
