#include "tests/support/NotificationServerStandIn.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>

#include <algorithm>
#include <stdexcept>

namespace roost::test {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");

/// Qt keeps connections by name, for the whole process.
QString freshName()
{
    static int count = 0;
    return QStringLiteral("notification server %1").arg(++count);
}

} // namespace

NotificationServerStandIn::NotificationServerStandIn(const QString& address, QStringList capabilities,
                                                     uint firstId)
    : connectionName_(freshName()),
      connection_(QDBusConnection::connectToBus(address, connectionName_)),
      capabilities_(std::move(capabilities)),
      nextId_(firstId)
{
    if (!connection_->registerVirtualObject(path, this) ||
        !connection_->interface()
             ->registerService(service, QDBusConnectionInterface::QueueService)
             .isValid()) {
        throw std::runtime_error("the notification server cannot take its name");
    }
}

NotificationServerStandIn::~NotificationServerStandIn() { leave(); }

void NotificationServerStandIn::leave()
{
    connection_.reset();
    QDBusConnection::disconnectFromBus(connectionName_);
}

void NotificationServerStandIn::sayGoodBye()
{
    connection_->interface()->unregisterService(service);
    // By its next answers the bus has told everybody of that.
    for (int i = 0; i < 5; ++i) {
        static_cast<void>(connection_->interface()->isServiceRegistered(service));
    }
    leave();
}

void NotificationServerStandIn::invoke(uint id, const QString& action) const
{
    QDBusMessage signal = QDBusMessage::createSignal(path, service, QStringLiteral("ActionInvoked"));
    signal.setArguments({id, action});
    connection_->send(signal);
}

void NotificationServerStandIn::close(uint id, uint reason) const
{
    QDBusMessage signal = QDBusMessage::createSignal(path, service, QStringLiteral("NotificationClosed"));
    signal.setArguments({id, reason});
    connection_->send(signal);
}

QString NotificationServerStandIn::introspect(const QString& /*path*/) const { return {}; }

bool NotificationServerStandIn::handleMessage(const QDBusMessage& message,
                                              const QDBusConnection& /*connection*/)
{
    if (message.member() == QLatin1String("GetCapabilities")) {
        ++timesAsked_;
        connection_->send(message.createReply(capabilities_));
        if (manner_ == Manner::leavesOnceAsked) {
            sayGoodBye();
        }
        return true;
    }
    if (message.member() != QLatin1String("Notify") ||
        message.signature() != QLatin1String("susssasa{sv}i")) {
        return false;
    }
    switch (manner_) {
    case Manner::answers:
        take(message);
        mostWaiting_ = std::max(mostWaiting_, ++waiting_);
        QMetaObject::invokeMethod(
            this,
            [this, answer = message.createReply(taken_.back().id)] {
                --waiting_;
                if (connection_) {
                    connection_->send(answer);
                }
            },
            Qt::QueuedConnection);
        break;
    case Manner::leavesOnceTold:
        take(message);
        connection_->send(message.createReply(taken_.back().id));
        sayGoodBye();
        break;
    case Manner::leavesOnceAsked:
    case Manner::refuses:
        connection_->send(message.createErrorReply(
            QStringLiteral("org.freedesktop.Notifications.Error.Excess"), QStringLiteral("too many")));
        break;
    case Manner::isMute:
        take(message);
        break;
    case Manner::leaves:
        leave();
        break;
    }
    return true;
}

void NotificationServerStandIn::take(const QDBusMessage& message)
{
    const QVariantList arguments = message.arguments();
    Notification notification;
    notification.appName = arguments.at(0).toString();
    notification.replaces = arguments.at(1).toUInt();
    notification.icon = arguments.at(2).toString();
    notification.summary = arguments.at(3).toString();
    notification.body = arguments.at(4).toString();
    notification.actions = arguments.at(5).toStringList();
    notification.hints = qdbus_cast<QVariantMap>(arguments.at(6));
    notification.timeout = arguments.at(7).toInt();
    notification.id = notification.replaces != 0 ? notification.replaces : nextId_++;
    taken_.push_back(notification);
}

} // namespace roost::test
