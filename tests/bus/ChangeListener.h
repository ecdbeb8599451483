#pragma once

#include "bus/RoostBus.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
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
