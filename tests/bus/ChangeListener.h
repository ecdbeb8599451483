#pragma once

#include "bus/RoostBus.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <vector>

namespace roost::test {

/// Hears what a model announces.
class ChangeListener final : public QObject {
    Q_OBJECT

public:
    struct Change {
        QVariantMap values;
        QStringList invalidated;
    };

    explicit ChangeListener(QDBusConnection connection)
    {
        connection.connect({}, RoostBus::modelPath, RoostBus::propertiesInterface,
                           QStringLiteral("PropertiesChanged"), this,
                           SLOT(hear(QString, QVariantMap, QStringList)));
        // Whatever is said from now on is heard: the bus has read the request to listen, which came before
        // this.
        static_cast<void>(connection.interface()->isServiceRegistered(connection.baseService()).value());
    }

    std::vector<Change> changes;

private Q_SLOTS:
    void hear(const QString& interface, const QVariantMap& values, const QStringList& invalidated)
    {
        EXPECT_EQ(interface, RoostBus::modelInterface);
        changes.push_back({values, invalidated});
    }
};

} // namespace roost::test
