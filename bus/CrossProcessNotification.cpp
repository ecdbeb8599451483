#include "bus/CrossProcessNotification.h"

#include "bus/RoostBus.h"

#include <QDBusMessage>

namespace roost::CrossProcessNotification {

namespace {

const QString member = QStringLiteral("Posted");

} // namespace

void post(const QDBusConnection& connection, const QString& name, Date at)
{
    QDBusMessage signal = QDBusMessage::createSignal(RoostBus::path, RoostBus::notificationInterface, member);
    signal.setArguments({name, QVariant::fromValue<qlonglong>(at.time_since_epoch().count())});
    connection.send(signal);
}

Listener::Listener(QDBusConnection connection, QString name, std::function<void(Date)> heard)
    : connection_(std::move(connection)),
      name_(std::move(name)),
      heard_(std::move(heard))
{
    // Matched by the first argument: other notifications do not come here.
    connection_.connect({}, RoostBus::path, RoostBus::notificationInterface, member, {name_},
                        QStringLiteral("sx"), this, SLOT(hear(QString, qlonglong)));
}

Listener::~Listener()
{
    connection_.disconnect({}, RoostBus::path, RoostBus::notificationInterface, member, {name_},
                           QStringLiteral("sx"), this, SLOT(hear(QString, qlonglong)));
}

void Listener::hear(const QString& /*name*/, qlonglong milliseconds)
{
    // A copy: whoever hears it may let this go.
    const auto heard = heard_;
    heard(Date{std::chrono::milliseconds{milliseconds}});
}

} // namespace roost::CrossProcessNotification
