#pragma once

#include "tests/support/GuardedProcess.h"
#include "tests/support/PrivateBus.h"

#include <QStringList>
#include <QVariantMap>

#include <vector>

namespace roost::test {

/// The notification daemon of python-dbusmock, which shows nothing, can do what a test says and remembers
/// what it was told. Main thread.
class MockNotificationDaemon {
public:
    /// The arguments of one call of "Notify".
    struct Notification {
        uint replaces = 0;
        QString summary;
        QString body;
        QStringList actions;
        QVariantMap hints;
    };

    /// Returns when it is on the bus, which outlives it.
    MockNotificationDaemon(const PrivateBus& bus, const QStringList& capabilities);

    /// What it was told so far, in order.
    std::vector<Notification> taken() const;

    /// Tells everybody what the user did. Notifications are numbered from 1.
    void invoke(uint id, const QString& action) const;
    void close(uint id, uint reason) const;

private:
    QVariantList ask(const QString& method, const QVariantList& arguments) const;

    const PrivateBus& bus_;
    GuardedProcess process_;
};

} // namespace roost::test
