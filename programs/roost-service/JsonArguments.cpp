#include "programs/roost-service/JsonArguments.h"

#include <QJsonValue>

#include <algorithm>
#include <cmath>

namespace roost::local {

std::optional<QString> JsonArguments::text(const QString& key)
{
    const QJsonValue value = json_.value(key);
    if (value.isUndefined() || value.isString()) {
        return value.isString() ? std::optional(value.toString()) : std::nullopt;
    }
    complain(QStringLiteral("\"%1\" must be a text.").arg(key));
    return std::nullopt;
}

std::optional<qint64> JsonArguments::integer(const QString& key, qint64 lowest, qint64 highest)
{
    const QJsonValue value = json_.value(key);
    if (value.isUndefined()) {
        return std::nullopt;
    }
    const double number = value.toDouble(std::nan(""));
    if (std::floor(number) == number && number >= static_cast<double>(lowest) &&
        number <= static_cast<double>(highest)) {
        return value.toInteger();
    }
    complain(
        QStringLiteral("\"%1\" must be a whole number from %2 to %3.").arg(key).arg(lowest).arg(highest));
    return std::nullopt;
}

std::optional<bool> JsonArguments::flag(const QString& key)
{
    const QJsonValue value = json_.value(key);
    if (value.isUndefined() || value.isBool()) {
        return value.isBool() ? std::optional(value.toBool()) : std::nullopt;
    }
    complain(QStringLiteral("\"%1\" must be true or false.").arg(key));
    return std::nullopt;
}

std::optional<QJsonObject> JsonArguments::object(const QString& key)
{
    const QJsonValue value = json_.value(key);
    if (value.isUndefined() || value.isObject()) {
        return value.isObject() ? std::optional(value.toObject()) : std::nullopt;
    }
    complain(QStringLiteral("\"%1\" must be an object.").arg(key));
    return std::nullopt;
}

void JsonArguments::allow(std::initializer_list<QStringView> keys)
{
    for (const QString& key : json_.keys()) {
        if (std::ranges::find(keys, QStringView(key)) == keys.end()) {
            complain(QStringLiteral("\"%1\" is not known here.").arg(key));
        }
    }
}

void JsonArguments::complain(const QString& sentence)
{
    if (!complaint_) {
        complaint_ = sentence;
    }
}

} // namespace roost::local
