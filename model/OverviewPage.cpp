#include "model/OverviewPage.h"

namespace roost {

std::optional<WebURL> overviewPage(const std::optional<WebURL>& named, const QUrl& baseURL)
{
    return named ? named : WebURL::parse(appendingPath(baseURL, u"roost/overview").toEncoded().toStdString());
}

} // namespace roost
