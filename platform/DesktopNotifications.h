#pragma once

#include "bus/SessionBus.h"
#include "notify/NotificationCenter.h"

#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QObject>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace roost {

/// The desktop's notification server, org.freedesktop.Notifications on the session bus (Desktop Notifications
/// Specification 1.2). Whether this program may notify cannot be asked: a server that answers is taken for a
/// yes, and none for a no. The switch that a desktop has for each program is the server's own to respect,
/// which knows this one by the hint "desktop-entry". A server that leaves, or comes back as another, is
/// noticed. Main thread.
class DesktopNotifications final : public QObject, public NotificationCenter {
    Q_OBJECT

public:
    /// `addresses` are those of the bus, as `sessionBusAddresses` gives them. `openLabel` says "Open" on a
    /// button, in the user's language; it is asked for each notification.
    DesktopNotifications(QString addresses, std::function<QString()> openLabel);
    ~DesktopNotifications() override;

    void setDelegate(Delegate* delegate) override { delegate_ = delegate; }
    QCoro::Task<Authorization> authorization(std::chrono::milliseconds limit) override;
    /// As `authorization`: nobody is asked on these desktops.
    QCoro::Task<Authorization> requestAuthorization(std::chrono::milliseconds limit) override;
    QCoro::Task<bool> add(Request request, std::chrono::milliseconds limit) override;

private Q_SLOTS: // NOLINT: called by the bus
    void invoke(uint id, const QString& action, const QDBusMessage& message);
    void close(uint id, uint reason, const QDBusMessage& message);
    void changeOwner(const QString& name, const QString& before, const QString& now);

private:
    /// A notification that the server knows.
    struct Shown {
        std::string identifier;
        UserInfo userInfo;
        /// Whether it may still be replaced.
        bool isOpen = true;
    };

    QCoro::Task<bool> reachServer(QDeadlineTimer deadline);
    void attach(std::shared_ptr<BusConnection> bus);
    enum class Listening { begins, ends };
    void listen(Listening listening);
    void forgetServer();
    QDBusMessage notifyCall(const Request& request) const;
    void keep(std::uint32_t id, Request request);

    QString addresses_;
    std::function<QString()> openLabel_;
    Delegate* delegate_ = nullptr;
    std::shared_ptr<BusConnection> bus_;
    /// The unique name of the server that `capabilities_` and `shown_` are of.
    QString server_;
    std::optional<QStringList> capabilities_;
    std::map<std::uint32_t, Shown> shown_;
};

} // namespace roost
