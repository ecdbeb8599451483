#include "model/InfoDictionary.h"

#include "InfoDictionaryValues.h"

#include <QFile>
#include <QJsonDocument>

#include <cmath>
#include <limits>
#include <utility>

namespace roost {

InfoDictionary::InfoDictionary(QJsonObject values) : values_{std::move(values)} {}

InfoDictionary InfoDictionary::builtIn()
{
    return InfoDictionary{QJsonDocument::fromJson(infoDictionaryJson).object()};
}

std::expected<InfoDictionary, QString> InfoDictionary::fromFile(const QString& path)
{
    QFile file{path};
    if (!file.open(QIODevice::ReadOnly)) {
        return std::unexpected(
            QStringLiteral("The information file %1 cannot be read: %2.").arg(path, file.errorString()));
    }
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError) {
        return std::unexpected(QStringLiteral("The information file %1 is not JSON: %2 (at byte %3).")
                                   .arg(path, error.errorString())
                                   .arg(error.offset));
    }
    if (!document.isObject()) {
        return std::unexpected(
            QStringLiteral("The information file %1 does not hold a JSON object.").arg(path));
    }
    return InfoDictionary{document.object()};
}

std::optional<QString> InfoDictionary::string(QStringView key) const
{
    const QJsonValue value = values_.value(key);
    if (!value.isString() || value.toString().contains(QLatin1String("$("))) {
        return std::nullopt;
    }
    return value.toString();
}

std::expected<std::optional<int>, QString> InfoDictionary::wholeNumber(QStringView key, int lowest,
                                                                       int highest) const
{
    const QJsonValue value = values_.value(key);
    if (value.isUndefined()) {
        return std::nullopt;
    }
    const double number = value.toDouble(std::numeric_limits<double>::quiet_NaN());
    if (!(number >= lowest && number <= highest) || std::trunc(number) != number) {
        return std::unexpected(QStringLiteral("%1 must be a whole number from %2 to %3.")
                                   .arg(key.toString())
                                   .arg(lowest)
                                   .arg(highest));
    }
    return static_cast<int>(number);
}

QString InfoDictionary::version() const
{
    return string(u"CFBundleShortVersionString").value_or(QStringLiteral("0"));
}

} // namespace roost
