#include "service/SystemProxies.h"

#include <QHostAddress>

namespace roost {

QList<QNetworkProxy> SystemProxies::queryProxy(const QNetworkProxyQuery& query)
{
    if (isLoopback(query.peerHostName())) {
        return {QNetworkProxy{QNetworkProxy::NoProxy}};
    }
    return systemProxyForQuery(query);
}

bool isLoopback(const QString& host)
{
    const QString name = host.endsWith(QLatin1Char('.')) ? host.chopped(1) : host;
    return name.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0 ||
           name.endsWith(QLatin1String(".localhost"), Qt::CaseInsensitive) || QHostAddress{name}.isLoopback();
}

} // namespace roost
