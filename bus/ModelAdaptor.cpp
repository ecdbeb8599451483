#include "bus/ModelAdaptor.h"

#include "bus/BusCall.h"
#include "bus/ModelDescription.h"
#include "bus/ModelProperties.h"
#include "bus/RoostBus.h"

#include <unistd.h>

namespace roost {

namespace {

const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
constexpr std::chrono::seconds patience{5};
/// How many callers are known to be this user's at a time.
constexpr std::size_t mostKnown = 256;

QDBusMessage refusal(const QDBusMessage& message)
{
    return message.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("No such arguments."));
}

bool isCall(const QDBusMessage& message, const char* member, const char* signature)
{
    return message.member() == QLatin1String(member) && message.signature() == QLatin1String(signature);
}

} // namespace

/// One connection, as long as the app is on it.
struct ModelAdaptor::Presence {
    /// Null when it has gone.
    ModelAdaptor* owner;
    QDBusConnection connection;
    /// The unique names of callers that are processes of this user; the bus never gives one twice.
    std::set<QString> known;
};

ModelAdaptor::ModelAdaptor(AppModel& model, std::function<void()> quit)
    : model_(&model),
      quit_(std::move(quit))
{
    announcing_.setSingleShot(true);
    announcing_.setInterval(0);
    connect(&announcing_, &QTimer::timeout, this, [this] { announce(); });
    const AppState* const state = &model.state();
    const auto follow = [this, state](auto signal, const QString& name) {
        connect(state, signal, this, [this, name] { changed(name); });
    };
    follow(&AppState::accountsChanged, QStringLiteral("Accounts"));
    follow(&AppState::isRefreshingChanged, QStringLiteral("IsRefreshing"));
    follow(&AppState::lastRefreshAtChanged, QStringLiteral("LastRefreshAt"));
    follow(&AppState::signInStateChanged, QStringLiteral("SignInState"));
    follow(&AppState::selectedProfileIDChanged, QStringLiteral("SelectedProfileID"));
    follow(&AppState::launchAtLoginChanged, QStringLiteral("LaunchAtLogin"));
    follow(&AppState::updateStatusChanged, QStringLiteral("UpdateStatus"));
}

ModelAdaptor::~ModelAdaptor()
{
    if (presence_) {
        presence_->owner = nullptr;
        presence_->connection.unregisterObject(RoostBus::modelPath);
    }
}

void ModelAdaptor::attach(QDBusConnection connection)
{
    if (presence_) {
        presence_->owner = nullptr;
        presence_->connection.unregisterObject(RoostBus::modelPath);
    }
    presence_ = std::make_shared<Presence>(this, connection);
    connection.registerVirtualObject(RoostBus::modelPath, this, QDBusConnection::SingleNode);
}

QString ModelAdaptor::introspect(const QString& /*path*/) const { return modelDescription(); }

bool ModelAdaptor::handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/)
{
    const bool isOurs = message.interface() == RoostBus::modelInterface ||
                        message.interface() == propertiesInterface || message.interface().isEmpty();
    if (message.type() != QDBusMessage::MethodCallMessage || !isOurs || !presence_) {
        return false;
    }
    answer(presence_, message);
    return true;
}

QCoro::Task<void> ModelAdaptor::answer(std::shared_ptr<Presence> presence, QDBusMessage message)
{
    const QString sender = message.service();
    if (!presence->known.contains(sender)) {
        auto asking =
            callBusDaemon(presence->connection, QStringLiteral("GetConnectionUnixUser"), {sender}, patience);
        const QDBusMessage user = co_await asking;
        if (presence->owner == nullptr) {
            co_return;
        }
        if (user.type() != QDBusMessage::ReplyMessage || user.arguments().value(0).toUInt() != ::geteuid()) {
            presence->connection.send(
                message.createErrorReply(RoostBus::notAllowed, QStringLiteral("This is another user's.")));
            co_return;
        }
        if (presence->known.size() >= mostKnown) {
            presence->known.clear();
        }
        presence->known.insert(sender);
    }
    ModelAdaptor& self = *presence->owner;
    const std::optional<QDBusMessage> reply = message.interface() == propertiesInterface
                                                  ? self.answerProperties(message)
                                                  : self.answerModel(message);
    if (reply) {
        presence->connection.send(*reply);
    }
}

QDBusMessage ModelAdaptor::answerProperties(const QDBusMessage& message) const
{
    const QString interface = message.arguments().value(0).toString();
    if (isCall(message, "Get", "ss") && interface == RoostBus::modelInterface) {
        const QVariant value = ModelProperties::value(model_->state(), message.arguments().at(1).toString());
        return value.isValid() ? message.createReply(QVariant::fromValue(QDBusVariant(value)))
                               : message.createErrorReply(QDBusError::UnknownProperty,
                                                          QStringLiteral("There is no such property."));
    }
    if (isCall(message, "GetAll", "s") && interface == RoostBus::modelInterface) {
        QVariantMap all;
        for (const QString& name : ModelProperties::names()) {
            all.insert(name, ModelProperties::value(model_->state(), name));
        }
        return message.createReply(all);
    }
    if (message.member() == QLatin1String("Set")) {
        return message.createErrorReply(QDBusError::PropertyReadOnly, QStringLiteral("Nothing can be set."));
    }
    return refusal(message);
}

std::optional<QDBusMessage> ModelAdaptor::answerModel(const QDBusMessage& message)
{
    const auto profileId = [&] { return message.arguments().at(0).toString().toStdString(); };
    if (isCall(message, "RequestRefresh", "b")) {
        if (!message.arguments().at(0).toBool()) {
            model_->requestRefresh();
            return message.createReply();
        }
        reply(presence_, message, model_->refreshed());
        return std::nullopt;
    }
    if (isCall(message, "SignIn", "")) {
        model_->signIn();
        return message.createReply();
    }
    if (isCall(message, "SignOut", "s") || isCall(message, "Select", "s")) {
        if (model_->state().account(profileId()) == nullptr) {
            return message.createErrorReply(RoostBus::noSuchProfile,
                                            QStringLiteral("There is no such profile."));
        }
        if (message.member() == QLatin1String("Select")) {
            model_->select(profileId());
            return message.createReply();
        }
        reply(presence_, message, model_->signOut(profileId()));
        return std::nullopt;
    }
    if (isCall(message, "OpenRoost", "")) {
        model_->openRoost();
        return message.createReply();
    }
    if (isCall(message, "CheckForUpdates", "")) {
        model_->updater().checkNow();
        return message.createReply();
    }
    if (isCall(message, "InstallAndRestart", "")) {
        model_->updater().installAndRestart();
        return message.createReply();
    }
    if (isCall(message, "Quit", "")) {
        // Answered first: the connection goes with the program.
        QTimer::singleShot(0, this, [this] { quit_(); });
        return message.createReply();
    }
    return refusal(message);
}

QCoro::Task<void> ModelAdaptor::reply(std::shared_ptr<Presence> presence, QDBusMessage message,
                                      QCoro::Task<void> after)
{
    co_await after;
    presence->connection.send(message.createReply());
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
        if (ModelProperties::isInvalidatedOnly(name)) {
            invalidated.append(name);
        } else {
            values.insert(name, ModelProperties::value(model_->state(), name));
        }
    }
    QDBusMessage signal = QDBusMessage::createSignal(RoostBus::modelPath, propertiesInterface,
                                                     QStringLiteral("PropertiesChanged"));
    signal.setArguments({RoostBus::modelInterface, values, invalidated});
    presence_->connection.send(signal);
}

} // namespace roost
