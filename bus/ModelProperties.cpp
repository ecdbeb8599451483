#include "bus/ModelProperties.h"

#include "model/RoostJSON.h"
#include "model/RoostStoreFileFields.h"

#include <QDBusArgument>
#include <QDBusMetaType>

#include <map>

namespace roost::ModelProperties {

/// The structures of the bus.
struct SignInOnBus {
    QString state;
    QString message;
};

struct UpdatesOnBus {
    QStringList ready;
    QStringList available;
    bool canCheck = false;
};

QDBusArgument& operator<<(QDBusArgument& argument, const SignInOnBus& value)
{
    argument.beginStructure();
    argument << value.state << value.message;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, SignInOnBus& value)
{
    argument.beginStructure();
    argument >> value.state >> value.message;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const UpdatesOnBus& value)
{
    argument.beginStructure();
    argument << value.ready << value.available << value.canCheck;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, UpdatesOnBus& value)
{
    argument.beginStructure();
    argument >> value.ready >> value.available >> value.canCheck;
    argument.endStructure();
    return argument;
}

namespace {

const QString idle = QStringLiteral("idle");
const QString inProgress = QStringLiteral("inProgress");
const QString failed = QStringLiteral("failed");

QStringList listOf(const std::optional<std::string>& text)
{
    return text ? QStringList{QString::fromStdString(*text)} : QStringList{};
}

std::optional<std::string> textOf(const QStringList& list)
{
    return list.isEmpty() ? std::nullopt : std::optional{list.first().toStdString()};
}

/// What of `value` is a T; nothing when it is something else. Structures come from the bus undone.
template <class T>
std::optional<T> read(const QVariant& value, const char* signature)
{
    if (value.metaType() == QMetaType::fromType<T>()) {
        return value.value<T>();
    }
    if (value.metaType() != QMetaType::fromType<QDBusArgument>()) {
        return std::nullopt;
    }
    const auto argument = value.value<QDBusArgument>();
    return argument.currentSignature() == QLatin1String(signature) ? std::optional{qdbus_cast<T>(argument)}
                                                                   : std::nullopt;
}

template <class T>
std::optional<T> optionalOf(const QList<T>& list)
{
    return list.isEmpty() ? std::nullopt : std::optional{list.first()};
}

std::optional<SignInState::Any> signInStateOf(const SignInOnBus& value)
{
    if (value.state == idle) {
        return SignInState::Idle{};
    }
    if (value.state == inProgress) {
        return SignInState::InProgress{};
    }
    return value.state == failed
               ? std::optional<SignInState::Any>{SignInState::Failed{value.message.toStdString()}}
               : std::nullopt;
}

SignInOnBus onBus(const SignInState::Any& state)
{
    if (const auto* failure = std::get_if<SignInState::Failed>(&state)) {
        return {failed, QString::fromStdString(failure->message)};
    }
    return {std::holds_alternative<SignInState::InProgress>(state) ? inProgress : idle, {}};
}

struct Property {
    QVariant (*get)(const AppState&);
    bool (*take)(AppState&, const QVariant&);
    bool isInvalidatedOnly = false;
};

/// Has `set` take the value when it is a T.
template <class T, class Set>
bool taken(const QVariant& value, const char* signature, Set set)
{
    const std::optional<T> read = ModelProperties::read<T>(value, signature);
    return read && set(*read);
}

const std::map<QString, Property>& properties()
{
    static const std::map<QString, Property> all = [] {
        qDBusRegisterMetaType<SignInOnBus>();
        qDBusRegisterMetaType<UpdatesOnBus>();
        return std::map<QString, Property>{
            {QStringLiteral("Accounts"),
             {[](const AppState& state) {
                  // The time of writing says nothing here.
                  return QVariant{QString::fromStdString(
                      RoostJSON::encoder().encode(RoostStoreFile{.accounts = state.accounts()}))};
              },
              [](AppState& state, const QVariant& value) {
                  return taken<QString>(value, "s", [&](const QString& text) {
                      auto file = RoostJSON::decoder().decode<RoostStoreFile>(text.toStdString());
                      if (file) {
                          state.setAccounts(std::move(file->accounts));
                      }
                      return file.has_value();
                  });
              },
              true}},
            {QStringLiteral("IsRefreshing"),
             {[](const AppState& state) { return QVariant{state.isRefreshing()}; },
              [](AppState& state, const QVariant& value) {
                  return taken<bool>(value, "b", [&](bool is) {
                      state.setRefreshing(is);
                      return true;
                  });
              }}},
            {QStringLiteral("LastRefreshAt"),
             {[](const AppState& state) {
                  const std::optional<Date> at = state.lastRefreshAt();
                  return QVariant::fromValue(at ? QList<qlonglong>{at->time_since_epoch().count()}
                                                : QList<qlonglong>{});
              },
              [](AppState& state, const QVariant& value) {
                  return taken<QList<qlonglong>>(value, "ax", [&](const QList<qlonglong>& list) {
                      const auto at = optionalOf(list);
                      state.setLastRefreshAt(at ? std::optional{Date{std::chrono::milliseconds{*at}}}
                                                : std::nullopt);
                      return true;
                  });
              }}},
            {QStringLiteral("SignInState"),
             {[](const AppState& state) { return QVariant::fromValue(onBus(state.signInState())); },
              [](AppState& state, const QVariant& value) {
                  return taken<SignInOnBus>(value, "(ss)", [&](const SignInOnBus& received) {
                      auto next = signInStateOf(received);
                      if (next) {
                          state.setSignInState(*std::move(next));
                      }
                      return next.has_value();
                  });
              }}},
            {QStringLiteral("SelectedProfileID"),
             {[](const AppState& state) { return QVariant{listOf(state.selectedProfileID())}; },
              [](AppState& state, const QVariant& value) {
                  return taken<QStringList>(value, "as", [&](const QStringList& list) {
                      state.setSelectedProfileID(textOf(list));
                      return true;
                  });
              }}},
            {QStringLiteral("LaunchAtLogin"),
             {[](const AppState& state) { return QVariant{state.launchAtLogin()}; },
              [](AppState& state, const QVariant& value) {
                  return taken<bool>(value, "b", [&](bool launches) {
                      state.setLaunchAtLogin(launches);
                      return true;
                  });
              }}},
            {QStringLiteral("UpdateStatus"),
             {[](const AppState& state) {
                  const UpdateStatus& status = state.updateStatus();
                  return QVariant::fromValue(UpdatesOnBus{listOf(status.readyVersion),
                                                          listOf(status.availableVersion), status.canCheck});
              },
              [](AppState& state, const QVariant& value) {
                  return taken<UpdatesOnBus>(value, "(asasb)", [&](const UpdatesOnBus& received) {
                      state.setUpdateStatus(
                          {textOf(received.ready), textOf(received.available), received.canCheck});
                      return true;
                  });
              }}},
        };
    }();
    return all;
}

} // namespace

const QStringList& names()
{
    static const QStringList all = [] {
        QStringList list;
        for (const auto& [name, property] : properties()) {
            list.append(name);
        }
        return list;
    }();
    return all;
}

bool isInvalidatedOnly(const QString& name)
{
    const auto found = properties().find(name);
    return found != properties().end() && found->second.isInvalidatedOnly;
}

QVariant value(const AppState& state, const QString& name)
{
    const auto found = properties().find(name);
    return found == properties().end() ? QVariant{} : found->second.get(state);
}

bool take(AppState& state, const QString& name, const QVariant& value)
{
    const auto found = properties().find(name);
    return found != properties().end() && found->second.take(state, value);
}

} // namespace roost::ModelProperties

Q_DECLARE_METATYPE(roost::ModelProperties::SignInOnBus)
Q_DECLARE_METATYPE(roost::ModelProperties::UpdatesOnBus)
