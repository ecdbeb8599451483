#pragma once

#include "tests/support/GuardedProcess.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/ScratchFolder.h"

#include <QDBusConnection>
#include <QString>

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace roost::test {

/// A session of its own for one test: a new home with empty XDG folders and a session bus (dbus-daemon) that
/// nobody else is on. While it lives, the environment of this process names them and no display, so that this
/// process and those it starts are in that session. One at a time, on the main thread.
class PrivateBus {
public:
    enum class Activation {
        /// Only what a test starts is on the bus.
        none,
        /// The bus starts the services that are installed on this machine, as on a desktop.
        installed,
    };

    enum class Users {
        /// As on a desktop, the bus is for this user alone.
        thisOne,
        /// It lets in any user of the machine.
        all,
    };

    explicit PrivateBus(Activation activation = Activation::none, Users users = Users::thisOne);
    explicit PrivateBus(Users users) : PrivateBus(Activation::none, users) {}
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    const QString& address() const { return address_; }
    /// The same without the identifier of this one bus: that of every bus that is started at its place.
    QString lastingAddress() const { return address_.section(QLatin1Char(','), 0, 0); }
    std::filesystem::path home() const { return folder_.path(); }
    /// XDG_DATA_HOME.
    std::filesystem::path dataHome() const { return folder_ / "data"; }

    /// A connection of the test to the bus, for looking on.
    const QDBusConnection& connection() const { return connection_; }

    bool hasName(const QString& name) const;

    /// Returns when somebody on the bus has `name`, or nobody has it any more. Throws after the guard time.
    void awaitName(const QString& name, bool isThere) const;

    /// Stops the bus in its tracks, so that nothing answers, and has it go on.
    void freeze() const { daemon_->freeze(); }
    void thaw() const { daemon_->thaw(); }

    /// Kills the process that has `name`, which the bus has started, and returns when nobody has it any more.
    void stopService(const QString& name) const;

    /// Kills the bus and what it started.
    void end() { daemon_->end(); }

    /// After `end`: a new bus with the old address, and a new connection to it.
    void startAgain();

private:
    void start();

    ScratchFolder folder_;
    std::deque<ScopedVariable> environment_;
    std::vector<std::string> command_;
    std::unique_ptr<GuardedProcess> daemon_;
    QString address_;
    QDBusConnection connection_;
};

} // namespace roost::test
