#pragma once

#include "bus/SessionBus.h"

#include <QCoro/QCoroTask>
#include <QDBusMessage>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

namespace roost {

/// Hears from logind when the machine has woken up (org.freedesktop.login1, signal PrepareForSleep). Without
/// a system bus or logind, nothing is ever heard. Main thread.
class SystemWake final : public QObject {
    Q_OBJECT

public:
    /// `addresses` are those of the system bus; `woke` is called from the event loop.
    SystemWake(QString addresses, std::function<void()> woke);
    ~SystemWake() override;

private Q_SLOTS: // NOLINT: called by the bus
    void prepareForSleep(bool isAboutToSleep, const QDBusMessage& message);

private:
    struct Listening;

    static QCoro::Task<void> listen(std::shared_ptr<Listening> listening, QString addresses);
    static QCoro::Task<void> tellIfGenuine(std::shared_ptr<Listening> listening, QString sender);

    std::shared_ptr<Listening> listening_;
};

/// The addresses of the system bus: $DBUS_SYSTEM_BUS_ADDRESS, or its well-known socket (D-Bus Specification,
/// "Well-known Message Bus Instances").
QString systemBusAddresses(const QProcessEnvironment& environment);

} // namespace roost
