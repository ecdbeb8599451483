#pragma once

#include "model/Date.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <functional>

/// Short words from process to process: a broadcast on the session bus that carries a name and a time, and
/// reaches whoever listens at the moment. Main thread.
namespace roost::CrossProcessNotification {

/// Tells everybody who listens for `name`.
void post(const QDBusConnection& connection, const QString& name, Date at);

/// Listens for one name as long as it lives.
class Listener final : public QObject {
    Q_OBJECT

public:
    /// `heard` is called from the event loop with the time that was told, by the clock of whoever told it:
    /// any process on the bus, any time. It may destroy this.
    Listener(QDBusConnection connection, QString name, std::function<void(Date)> heard);
    ~Listener() override;

private Q_SLOTS: // NOLINT: called by the bus
    void hear(const QString& name, qlonglong milliseconds);

private:
    QDBusConnection connection_;
    QString name_;
    std::function<void(Date)> heard_;
};

} // namespace roost::CrossProcessNotification
