#include "bus/ModelAdaptor.h"

#include "bus/BusCall.h"
#include "bus/ModelDescription.h"
#include "bus/ModelProperties.h"
#include "bus/RoostBus.h"
#include "bus/SameUserGate.h"

#include <QDBusVariant>

namespace roost {

namespace {

QDBusMessage refusal(const QDBusMessage& call, QDBusError::ErrorType error, const char* reason)
{
    return call.createErrorReply(error, QString::fromLatin1(reason));
}

QDBusMessage noSuchMethod(const QDBusMessage& call)
{
    return refusal(call, QDBusError::UnknownMethod, "There is no such method.");
}

QDBusMessage wrongArguments(const QDBusMessage& call)
{
    return refusal(call, QDBusError::InvalidArgs, "The arguments are not of the described types.");
}

} // namespace

/// One connection, as long as the app is on it. Calls on their way keep it.
struct ModelAdaptor::Presence {
    QDBusConnection connection;
    std::shared_ptr<SameUserGate> gate;
    int unanswered = 0;
};

ModelAdaptor::ModelAdaptor(AppModel& model, std::function<void()> quit)
    : model_(&model),
      quit_(std::move(quit))
{
    announcing_.setSingleShot(true);
    announcing_.setInterval(0);
    connect(&announcing_, &QTimer::timeout, this, [this] { announce(); });
    for (const auto& [name, property] : ModelProperties::all()) {
        connect(&model.state(), property.changed, this, [this, name] { changed(name); });
    }
}

ModelAdaptor::~ModelAdaptor() { detach(); }

void ModelAdaptor::attach(QDBusConnection connection)
{
    detach();
    presence_ = std::make_shared<Presence>(
        connection, std::make_shared<SameUserGate>(connection, [this](const auto& call) { answer(call); }));
    connection.registerVirtualObject(RoostBus::modelPath, this, QDBusConnection::SingleNode);
    for (const auto& [name, property] : ModelProperties::all()) {
        changed(name);
    }
}

void ModelAdaptor::detach()
{
    if (presence_) {
        presence_->gate->close();
        presence_->connection.unregisterObject(RoostBus::modelPath);
        presence_.reset();
    }
}

QString ModelAdaptor::introspect(const QString& /*path*/) const { return modelDescription(); }

bool ModelAdaptor::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    const QString interface = message.interface();
    const bool isOurs = interface == RoostBus::modelInterface || interface == RoostBus::propertiesInterface ||
                        interface.isEmpty();
    // What was under way when the app left a connection has come too late.
    const bool isHere = presence_ && presence_->connection.name() == connection.name();
    if (message.type() != QDBusMessage::MethodCallMessage || !isOurs || !isHere) {
        return false;
    }
    presence_->gate->take(message);
    return true;
}

void ModelAdaptor::answer(const QDBusMessage& call)
{
    if (call.interface() == RoostBus::propertiesInterface) {
        answerOnBus(presence_->connection, call, answerToProperties(call));
        return;
    }
    const auto method = ModelMethods::all().find(call.member());
    if (method == ModelMethods::all().end()) {
        answerOnBus(presence_->connection, call, noSuchMethod(call));
    } else if (method->second.signature != call.signature()) {
        answerOnBus(presence_->connection, call, wrongArguments(call));
    } else {
        run(method->second, call);
    }
}

QDBusMessage ModelAdaptor::answerToProperties(const QDBusMessage& call) const
{
    static const std::map<QString, QString> signatures{{QStringLiteral("Get"), QStringLiteral("ss")},
                                                       {QStringLiteral("GetAll"), QStringLiteral("s")},
                                                       {QStringLiteral("Set"), QStringLiteral("ssv")}};
    const auto method = signatures.find(call.member());
    if (method == signatures.end()) {
        return noSuchMethod(call);
    }
    if (method->second != call.signature()) {
        return wrongArguments(call);
    }
    const QVariantList arguments = call.arguments();
    if (arguments.at(0).toString() != RoostBus::modelInterface) {
        return refusal(call, QDBusError::UnknownInterface, "There are no properties of that interface.");
    }
    if (arguments.size() == 1) {
        QVariantMap values;
        for (const auto& [name, property] : ModelProperties::all()) {
            values.insert(name, property.value(model_->state()));
        }
        return call.createReply(values);
    }
    const ModelProperties::Property* const property = ModelProperties::find(arguments.at(1).toString());
    if (property == nullptr) {
        return refusal(call, QDBusError::UnknownProperty, "There is no such property.");
    }
    if (arguments.size() == 3) {
        return refusal(call, QDBusError::PropertyReadOnly, "Nothing can be set.");
    }
    return call.createReply(QVariant::fromValue(QDBusVariant(property->value(model_->state()))));
}

void ModelAdaptor::run(const ModelMethods::Method& method, const QDBusMessage& call)
{
    if (presence_->unanswered >= mostUnanswered) {
        answerOnBus(presence_->connection, call,
                    refusal(call, QDBusError::LimitsExceeded, "Too many calls wait for an answer."));
        return;
    }
    const auto quitSoon = [this] { QTimer::singleShot(0, this, [this] { quit_(); }); };
    answerAfter(presence_, call, method.run({model_, quitSoon}, call.arguments()));
}

QCoro::Task<void> ModelAdaptor::answerAfter(std::shared_ptr<Presence> presence, QDBusMessage call,
                                            QCoro::Task<ModelMethods::Answer> running)
{
    ++presence->unanswered;
    const ModelMethods::Answer answer = co_await running;
    --presence->unanswered;
    answerOnBus(presence->connection, call,
                answer ? call.createReply(*answer)
                       : call.createErrorReply(answer.error().error, answer.error().reason));
}

void ModelAdaptor::changed(const QString& name)
{
    changed_.insert(name);
    announcing_.start();
}

void ModelAdaptor::announce()
{
    const std::set<QString> names = std::exchange(changed_, {});
    if (!presence_) {
        return;
    }
    QVariantMap values;
    QStringList invalidated;
    for (const QString& name : names) {
        const ModelProperties::Property& property = *ModelProperties::find(name);
        if (property.isInvalidatedOnly) {
            invalidated.append(name);
        } else {
            values.insert(name, property.value(model_->state()));
        }
    }
    QDBusMessage signal = QDBusMessage::createSignal(RoostBus::modelPath, RoostBus::propertiesInterface,
                                                     QStringLiteral("PropertiesChanged"));
    signal.setArguments({RoostBus::modelInterface, values, invalidated});
    presence_->connection.send(signal);
}

} // namespace roost
