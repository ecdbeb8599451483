#pragma once

#include "app/AppModel.h"
#include "bus/ModelMethods.h"

#include <QCoro/QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTimer>

#include <functional>
#include <memory>
#include <set>

namespace roost {

/// The running app on the session bus: what it publishes, and what can be asked of it, as
/// bus/world.brisken.roost.mac.Model1.xml describes it. Answers processes of this user alone; others learn
/// what is announced, and that is never the numbers. Changes are announced together, once per turn of the
/// event loop. Main thread; the model outlives it.
class ModelAdaptor final : public QDBusVirtualObject {
    Q_OBJECT

public:
    /// Calls that take their time, so many at once; further ones are refused.
    static constexpr int mostUnanswered = 256;

    /// `quit` ends the program; called from the event loop, after the call was answered.
    ModelAdaptor(AppModel& model, std::function<void()> quit);
    ~ModelAdaptor() override;

    /// Is there on `connection` from now on, and on no other, and announces everything there. Keeps the
    /// connection open until `detach`, or for as long as this lives; of one that has broken nothing is
    /// noticed.
    void attach(QDBusConnection connection);

    /// Is on no bus.
    void detach();

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    struct Presence;

    void answer(const QDBusMessage& call);
    QDBusMessage answerToProperties(const QDBusMessage& call) const;
    void run(const ModelMethods::Method& method, const QDBusMessage& call);
    static QCoro::Task<void> answerAfter(std::shared_ptr<Presence> presence, QDBusMessage call,
                                         QCoro::Task<ModelMethods::Answer> running);
    void changed(const QString& name);
    void announce();

    AppModel* model_;
    std::function<void()> quit_;
    /// Where the app is at the moment; null when it is nowhere.
    std::shared_ptr<Presence> presence_;
    std::set<QString> changed_;
    QTimer announcing_;
};

} // namespace roost
