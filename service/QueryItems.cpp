#include "service/QueryItems.h"

#include <QByteArray>

#include <algorithm>
#include <vector>

namespace roost {

namespace {

std::string decoded(std::string_view text)
{
    QByteArray bytes{text.data(), static_cast<qsizetype>(text.size())};
    bytes.replace('+', ' ');
    return QByteArray::fromPercentEncoding(bytes).toStdString();
}

/// The values of the items of that name, in order; without a "=" there is no value.
std::vector<std::optional<std::string>> queryItems(std::string_view address, std::string_view name)
{
    address = address.substr(0, address.find('#'));
    const auto mark = address.find('?');
    std::string_view rest = mark == std::string_view::npos ? std::string_view{} : address.substr(mark + 1);
    std::vector<std::optional<std::string>> values;
    while (!rest.empty()) {
        const std::string_view item = rest.substr(0, rest.find('&'));
        rest.remove_prefix(std::min(rest.size(), item.size() + 1));
        const auto equals = item.find('=');
        if (decoded(item.substr(0, equals)) == name) {
            values.push_back(equals == std::string_view::npos
                                 ? std::nullopt
                                 : std::optional{decoded(item.substr(equals + 1))});
        }
    }
    return values;
}

} // namespace

std::optional<std::string> firstQueryItem(std::string_view address, std::string_view name)
{
    const auto values = queryItems(address, name);
    return values.empty() ? std::nullopt : values.front();
}

std::optional<std::string> lastQueryItem(std::string_view address, std::string_view name)
{
    const auto values = queryItems(address, name);
    return values.empty() ? std::nullopt : values.back();
}

} // namespace roost
