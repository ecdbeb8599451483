#include "tests/platform/MockNotificationDaemon.h"

#include <QDBusArgument>
#include <QDBusMessage>

#include <stdexcept>

namespace roost::test {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");

std::vector<std::string> commandFor(const QStringList& capabilities)
{
    return {"/usr/bin/python3",
            "-m",
            "dbusmock",
            "--session",
            "--template",
            "notification_daemon",
            "--parameters",
            R"({"capabilities": ")" + capabilities.join(QLatin1Char(' ')).toStdString() + "\"}"};
}

MockNotificationDaemon::Notification notificationOf(const QVariantList& arguments)
{
    MockNotificationDaemon::Notification notification;
    notification.replaces = arguments.at(1).toUInt();
    notification.summary = arguments.at(3).toString();
    notification.body = arguments.at(4).toString();
    notification.actions = qdbus_cast<QStringList>(arguments.at(5));
    notification.hints = qdbus_cast<QVariantMap>(arguments.at(6));
    return notification;
}

} // namespace

MockNotificationDaemon::MockNotificationDaemon(const PrivateBus& bus, const QStringList& capabilities)
    : bus_(bus),
      process_(commandFor(capabilities))
{
    bus.awaitName(service, true);
}

std::vector<MockNotificationDaemon::Notification> MockNotificationDaemon::taken() const
{
    // a(tsav): time, method, arguments.
    const auto calls = ask(QStringLiteral("GetCalls"), {}).value(0).value<QDBusArgument>();
    std::vector<Notification> notifications;
    calls.beginArray();
    while (!calls.atEnd()) {
        qulonglong time = 0;
        QString method;
        QVariantList arguments;
        calls.beginStructure();
        calls >> time >> method >> arguments;
        calls.endStructure();
        if (method == QLatin1String("Notify")) {
            notifications.push_back(notificationOf(arguments));
        }
    }
    calls.endArray();
    return notifications;
}

void MockNotificationDaemon::invoke(uint id, const QString& action) const
{
    ask(QStringLiteral("EmitSignal"),
        {service, QStringLiteral("ActionInvoked"), QStringLiteral("us"), QVariantList{id, action}});
}

void MockNotificationDaemon::close(uint id, uint reason) const
{
    ask(QStringLiteral("EmitSignal"),
        {service, QStringLiteral("NotificationClosed"), QStringLiteral("uu"), QVariantList{id, reason}});
}

QVariantList MockNotificationDaemon::ask(const QString& method, const QVariantList& arguments) const
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/Notifications"),
                                       QStringLiteral("org.freedesktop.DBus.Mock"), method);
    call.setArguments(arguments);
    const QDBusMessage answer = bus_.connection().call(call);
    if (answer.type() != QDBusMessage::ReplyMessage) {
        throw std::runtime_error("the mock refuses: " + answer.errorMessage().toStdString());
    }
    return answer.arguments();
}

} // namespace roost::test
