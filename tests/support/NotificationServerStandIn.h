#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace roost::test {

/// A notification server (Desktop Notifications Specification 1.2) that shows nothing and remembers all, on a
/// connection of its own. While another one has the name it waits for it. It has left the bus when it is
/// gone. Main thread.
class NotificationServerStandIn final : public QDBusVirtualObject {
public:
    /// The arguments of one call of "Notify", and the number that it got.
    struct Notification {
        QString appName;
        uint replaces = 0;
        QString icon;
        QString summary;
        QString body;
        QStringList actions;
        QVariantMap hints;
        int timeout = 0;
        uint id = 0;
    };

    enum class Manner {
        answers,
        /// Refuses every notification.
        refuses,
        /// Takes notifications and never answers.
        isMute,
        /// Leaves the bus in the midst of the next notification.
        leaves,
        /// Leaves the bus as soon as it has said what it can do.
        leavesOnceAsked,
        /// Takes one more notification, says so and leaves the bus.
        leavesOnceTold,
    };

    explicit NotificationServerStandIn(const QString& address, QStringList capabilities, uint firstId = 1);
    ~NotificationServerStandIn() override;

    /// What it has taken, in order.
    const std::vector<Notification>& taken() const { return taken_; }
    /// How often somebody asked what it can do.
    int timesAsked() const { return timesAsked_; }
    /// How many notifications were there at once, at most, without an answer: it answers one that came from
    /// the event loop's next turn.
    int mostWaiting() const { return mostWaiting_; }
    void behave(Manner manner) { manner_ = manner; }

    /// Tells everybody what the user did.
    void invoke(uint id, const QString& action) const;
    void close(uint id, uint reason) const;

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    void take(const QDBusMessage& message);
    void leave();
    /// Leaves when what it has said and that it leaves has reached everybody on the bus.
    void sayGoodBye();

    QString connectionName_;
    std::optional<QDBusConnection> connection_;
    QStringList capabilities_;
    std::vector<Notification> taken_;
    int timesAsked_ = 0;
    int waiting_ = 0;
    int mostWaiting_ = 0;
    uint nextId_;
    Manner manner_ = Manner::answers;
};

} // namespace roost::test
