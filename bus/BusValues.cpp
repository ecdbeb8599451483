#include "bus/BusValues.h"

#include "model/RoostJSON.h"
#include "model/RoostStoreFileFields.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QStringList>

namespace roost::BusValues {

namespace {

const QString idle = QStringLiteral("idle");
const QString inProgress = QStringLiteral("inProgress");
const QString failed = QStringLiteral("failed");

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

/// Tells the bus library of the structures, once.
void introduceStructures()
{
    [[maybe_unused]] static const bool areKnown = [] {
        qDBusRegisterMetaType<SignInOnBus>();
        qDBusRegisterMetaType<UpdatesOnBus>();
        return true;
    }();
}

QStringList listOf(const std::optional<std::string>& text)
{
    return text && canCross(*text) ? QStringList{QString::fromStdString(*text)} : QStringList{};
}

/// What a list of at most one element stands for; nothing for a longer one.
std::optional<std::optional<std::string>> textOf(const QStringList& list)
{
    if (list.size() > 1) {
        return std::nullopt;
    }
    return list.isEmpty() ? std::optional<std::string>{} : list.first().toStdString();
}

/// The T that `value` is, which comes from the bus as itself or undone; nothing when it is something else.
template <class T>
std::optional<T> exactly(const QVariant& value)
{
    introduceStructures();
    const QMetaType wanted = QMetaType::fromType<T>();
    if (value.metaType() == wanted) {
        return value.value<T>();
    }
    if (value.metaType() != QMetaType::fromType<QDBusArgument>()) {
        return std::nullopt;
    }
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String(QDBusMetaType::typeToSignature(wanted))) {
        return std::nullopt;
    }
    return qdbus_cast<T>(argument);
}

} // namespace

bool canCross(const std::string& text)
{
    return text.find('\0') == std::string::npos && QString::fromStdString(text).toStdString() == text;
}

QVariant sent(bool value) { return value; }

QVariant sent(const std::optional<Date>& value)
{
    QList<qlonglong> list;
    if (value) {
        list.append(value->time_since_epoch().count());
    }
    return QVariant::fromValue(list);
}

QVariant sent(const std::optional<std::string>& value) { return listOf(value); }

QVariant sent(const std::vector<RoostAccountRecord>& value)
{
    // The time of writing says nothing here.
    return QString::fromStdString(RoostJSON::encoder().encode(RoostStoreFile{.accounts = value}));
}

QVariant sent(const SignInState::Any& value)
{
    introduceStructures();
    if (const auto* failure = std::get_if<SignInState::Failed>(&value)) {
        return QVariant::fromValue(SignInOnBus{failed, QString::fromStdString(failure->message)});
    }
    return QVariant::fromValue(
        SignInOnBus{std::holds_alternative<SignInState::InProgress>(value) ? inProgress : idle, {}});
}

QVariant sent(const UpdateStatus& value)
{
    introduceStructures();
    return QVariant::fromValue(
        UpdatesOnBus{listOf(value.readyVersion), listOf(value.availableVersion), value.canCheck});
}

template <>
std::optional<bool> received(const QVariant& value)
{
    return exactly<bool>(value);
}

template <>
std::optional<std::optional<Date>> received(const QVariant& value)
{
    const auto list = exactly<QList<qlonglong>>(value);
    if (!list || list->size() > 1) {
        return std::nullopt;
    }
    return list->isEmpty() ? std::optional<Date>{} : Date{std::chrono::milliseconds{list->first()}};
}

template <>
std::optional<std::optional<std::string>> received(const QVariant& value)
{
    const auto list = exactly<QStringList>(value);
    return list ? textOf(*list) : std::nullopt;
}

template <>
std::optional<std::vector<RoostAccountRecord>> received(const QVariant& value)
{
    const auto text = exactly<QString>(value);
    auto file = RoostJSON::decoder().decode<RoostStoreFile>(text.value_or(QString{}).toStdString());
    return file ? std::optional{std::move(file->accounts)} : std::nullopt;
}

template <>
std::optional<SignInState::Any> received(const QVariant& value)
{
    const auto pair = exactly<SignInOnBus>(value);
    if (pair && pair->state == idle) {
        return SignInState::Idle{};
    }
    if (pair && pair->state == inProgress) {
        return SignInState::InProgress{};
    }
    if (pair && pair->state == failed) {
        return SignInState::Failed{pair->message.toStdString()};
    }
    return std::nullopt;
}

template <>
std::optional<UpdateStatus> received(const QVariant& value)
{
    const auto parts = exactly<UpdatesOnBus>(value);
    const auto ready = parts ? textOf(parts->ready) : std::nullopt;
    const auto available = parts ? textOf(parts->available) : std::nullopt;
    if (!ready || !available) {
        return std::nullopt;
    }
    return UpdateStatus{*ready, *available, parts->canCheck};
}

} // namespace roost::BusValues
