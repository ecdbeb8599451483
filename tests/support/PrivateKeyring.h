#pragma once

#include "tests/support/PrivateBus.h"

#include <QMap>

#include <memory>
#include <string>
#include <vector>

namespace roost::test {

/// A real keyring (gnome-keyring-daemon) on a private bus, in any state that a user's can be in. The default
/// keyring is called "login" and opens with the password "lab". Nothing runs at first. Main thread; ends
/// before its bus.
class PrivateKeyring {
public:
    explicit PrivateKeyring(const PrivateBus& bus);

    /// As after a login with the password. Makes the default keyring where there is none. Each of these
    /// returns when the daemon can be used.
    void startUnlocked();

    /// As after a login without one: the default keyring, if there is one, has never been unlocked.
    void startLocked();

    /// Makes a default keyring without a password, before a start.
    void makeWithoutPassword() const;

    /// Makes one more keyring, unlocked, and gives its path.
    QString makeAnother(const QString& label);

    /// While the daemon runs: for the default keyring, or the one at `path`.
    void lock(const QString& path = defaultPath());
    void unlock(const QString& path = defaultPath());

    /// Stops the daemon where it stands, and has it go on.
    void freeze() const { daemon_->freeze(); }
    void thaw() const { daemon_->thaw(); }

    /// Kills the daemon. What it has stored stays and can be started again.
    void end();

    struct Items {
        qsizetype unlocked = 0;
        qsizetype locked = 0;

        bool operator==(const Items&) const = default;
    };

    /// How many items have these attributes, as another program of the user sees it.
    Items itemsWith(const QMap<QString, QString>& attributes) const;

    /// Makes an item with this secret in the keyring at `path`, as another program would.
    void putItem(const QString& path, const QMap<QString, QString>& attributes, const QByteArray& secret);

    static QString defaultPath() { return QStringLiteral("/org/freedesktop/secrets/collection/login"); }

private:
    void start(const std::vector<std::string>& command, const std::string& input);
    QString session();

    const PrivateBus* bus_;
    std::unique_ptr<GuardedProcess> daemon_;
};

} // namespace roost::test
