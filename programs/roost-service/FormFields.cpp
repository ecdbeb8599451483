#include "programs/roost-service/FormFields.h"

#include <QList>
#include <QStringDecoder>

#include <algorithm>

namespace roost::local {

namespace {

bool isHexDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

bool isUtf8(const QByteArray& bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString ignored = decoder(bytes);
    return !decoder.hasError();
}

std::optional<QByteArray> decoded(QByteArray text)
{
    for (qsizetype at = text.indexOf('%'); at >= 0; at = text.indexOf('%', at + 1)) {
        if (at + 2 >= text.size() || !isHexDigit(text[at + 1]) || !isHexDigit(text[at + 2])) {
            return std::nullopt;
        }
    }
    QByteArray plain = QByteArray::fromPercentEncoding(text.replace('+', ' '));
    return isUtf8(plain) ? std::optional(std::move(plain)) : std::nullopt;
}

} // namespace

std::optional<FormFields> FormFields::parse(const QByteArray& text)
{
    FormFields form;
    for (const QByteArray& field : text.split('&')) {
        if (field.isEmpty()) {
            continue;
        }
        const qsizetype equals = field.indexOf('=');
        auto name = decoded(equals < 0 ? field : field.left(equals));
        auto value = decoded(equals < 0 ? QByteArray() : field.mid(equals + 1));
        if (!name || !value) {
            return std::nullopt;
        }
        form.fields_.emplace_back(*std::move(name), *std::move(value));
    }
    return form;
}

std::optional<QByteArray> FormFields::value(QByteArrayView name) const
{
    const auto found = std::ranges::find_if(fields_, [&](const auto& field) { return field.first == name; });
    return found == fields_.end() || found->second.isEmpty() ? std::nullopt : std::optional(found->second);
}

std::vector<QByteArray> FormFields::values(QByteArrayView name) const
{
    std::vector<QByteArray> values;
    for (const auto& [key, value] : fields_) {
        if (key == name && !value.isEmpty()) {
            values.push_back(value);
        }
    }
    return values;
}

bool FormFields::repeats(QByteArrayView name) const
{
    return std::ranges::count_if(fields_, [&](const auto& field) { return field.first == name; }) > 1;
}

bool FormFields::repeatsAny() const
{
    return std::ranges::any_of(
        fields_, [&](const auto& field) { return field.first != "resource" && repeats(field.first); });
}

} // namespace roost::local
