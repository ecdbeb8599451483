#pragma once

#include "app/AppModel.h"

#include <QCoro/QCoroTask>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTimer>

#include <functional>
#include <memory>
#include <set>

namespace roost {

/// The running app on the session bus: what it publishes, and what can be asked of it, as
/// bus/world.brisken.roost.mac.Model1.xml describes it. Answers processes of this user alone. Changes are
/// announced together, once per turn of the event loop. Main thread; the model outlives it.
class ModelAdaptor final : public QDBusVirtualObject {
    Q_OBJECT

public:
    /// `quit` ends the program; called from the event loop.
    ModelAdaptor(AppModel& model, std::function<void()> quit);
    ~ModelAdaptor() override;

    /// Is there on `connection` from now on, and on no other.
    void attach(QDBusConnection connection);

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    struct Presence;

    static QCoro::Task<void> answer(std::shared_ptr<Presence> presence, QDBusMessage message);
    QDBusMessage answerProperties(const QDBusMessage& message) const;
    /// Nothing when the answer follows later.
    std::optional<QDBusMessage> answerModel(const QDBusMessage& message);
    static QCoro::Task<void> reply(std::shared_ptr<Presence> presence, QDBusMessage message,
                                   QCoro::Task<void> after);
    void changed(const QString& name);
    void announce();

    AppModel* model_;
    std::function<void()> quit_;
    std::shared_ptr<Presence> presence_;
    std::set<QString> changed_;
    QTimer announcing_;
};

} // namespace roost
