#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>

#include <functional>

namespace roost {

/// Listens, as long as it lives, for a keyring (the Secret Service) that comes to the session bus, or one in
/// which a collection was made, opened or closed. Asks nothing, and starts no keyring. Main thread.
class KeyringWatch final : public QObject {
    Q_OBJECT

public:
    /// `changed` is called from the event loop, several times for one change maybe: any process on the bus
    /// can say so, and what has changed is for the keyring to tell. It may destroy this.
    KeyringWatch(QDBusConnection connection, std::function<void()> changed);
    ~KeyringWatch() override;

private Q_SLOTS: // NOLINT: called by the bus
    void changeOwner(const QString& name, const QString& before, const QString& now);
    void changeCollection(const QDBusMessage& message);

private:
    void tell() const;

    QDBusConnection connection_;
    std::function<void()> changed_;
};

} // namespace roost
