#include "service/HttpSession.h"

#include <algorithm>

namespace roost {

std::optional<QByteArray> HttpResponse::header(QByteArrayView name) const
{
    const auto found = std::ranges::find_if(
        headers, [name](const auto& header) { return header.first.compare(name, Qt::CaseInsensitive) == 0; });
    if (found == headers.end()) {
        return std::nullopt;
    }
    return found->second;
}

} // namespace roost
