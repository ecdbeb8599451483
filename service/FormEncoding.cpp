#include "service/FormEncoding.h"

#include <QByteArray>

namespace roost::FormEncoding {

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

} // namespace roost::FormEncoding
