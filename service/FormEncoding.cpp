#include "service/FormEncoding.h"

#include <QByteArray>

#include <algorithm>

namespace roost::FormEncoding {

namespace {

std::string decoded(std::string_view text)
{
    QByteArray bytes{text.data(), static_cast<qsizetype>(text.size())};
    bytes.replace('+', ' ');
    return QByteArray::fromPercentEncoding(bytes).toStdString();
}

} // namespace

std::string percentEncoded(std::string_view text)
{
    return QByteArray{text.data(), static_cast<qsizetype>(text.size())}.toPercentEncoding().toStdString();
}

std::string formEncoded(const std::map<std::string, std::string>& form)
{
    std::string body;
    for (const auto& [key, value] : form) {
        body += (body.empty() ? "" : "&") + key + "=" + percentEncoded(value);
    }
    return body;
}

std::optional<std::string> firstValue(std::string_view query, std::string_view name)
{
    while (!query.empty()) {
        const std::string_view item = query.substr(0, query.find('&'));
        query.remove_prefix(std::min(query.size(), item.size() + 1));
        const auto equals = item.find('=');
        if (decoded(item.substr(0, equals)) == name) {
            return equals == std::string_view::npos ? std::nullopt
                                                    : std::optional{decoded(item.substr(equals + 1))};
        }
    }
    return std::nullopt;
}

} // namespace roost::FormEncoding
