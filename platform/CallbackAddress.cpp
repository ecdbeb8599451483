#include "platform/CallbackAddress.h"

#include <QByteArray>

#include <algorithm>
#include <vector>

namespace roost {

namespace {

/// application/x-www-form-urlencoded; a stray "%" stays as it is.
std::string decoded(std::string_view text)
{
    QByteArray bytes(text.data(), static_cast<qsizetype>(text.size()));
    bytes.replace('+', ' ');
    return QByteArray::fromPercentEncoding(bytes).toStdString();
}

/// The values of the items of that name, in order.
std::vector<std::string> queryItems(std::string_view address, std::string_view name)
{
    std::vector<std::string> values;
    address = address.substr(0, address.find('#'));
    const std::size_t mark = address.find('?');
    std::string_view rest = mark == std::string_view::npos ? std::string_view{} : address.substr(mark + 1);
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('&'), rest.size());
        const std::string_view item = rest.substr(0, end);
        const std::size_t equals = std::min(item.find('='), item.size());
        if (decoded(item.substr(0, equals)) == name) {
            values.push_back(decoded(item.substr(std::min(equals + 1, item.size()))));
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return values;
}

} // namespace

bool isCallback(std::string_view text, std::string_view scheme)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return text.size() <= longestCallback && text.size() > scheme.size() && text[scheme.size()] == ':' &&
           std::ranges::equal(text.substr(0, scheme.size()), scheme, {}, lower, lower) &&
           std::ranges::all_of(text, [](char c) { return c > ' ' && c < '\x7f'; });
}

std::optional<std::string> firstQueryItem(std::string_view address, std::string_view name)
{
    const std::vector<std::string> values = queryItems(address, name);
    return values.empty() ? std::nullopt : std::optional{values.front()};
}

std::optional<std::string> lastQueryItem(std::string_view address, std::string_view name)
{
    const std::vector<std::string> values = queryItems(address, name);
    return values.empty() ? std::nullopt : std::optional{values.back()};
}

} // namespace roost
