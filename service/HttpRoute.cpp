#include "service/HttpRoute.h"

#include <QNetworkProxyFactory>

namespace roost {

namespace {

bool isHttps(const QUrl& url) { return url.scheme() == QLatin1String("https"); }

HttpRoute routeToHost(const QString& host, quint16 port)
{
    HttpRoute route;
    route.host = host;
    route.port = port;
    if (const QHostAddress literal(host); !literal.isNull()) {
        route.addresses = {literal};
    }
    return route;
}

HttpRoute directRoute(const QUrl& url)
{
    return routeToHost(url.host(QUrl::FullyEncoded), static_cast<quint16>(url.port(isHttps(url) ? 443 : 80)));
}

HttpRoute forwardedRoute(const QNetworkProxy& proxy)
{
    HttpRoute route = routeToHost(proxy.hostName(), proxy.port());
    route.target = HttpSyntax::Target::absolute;
    if (!proxy.user().isEmpty()) {
        const QString credentials = proxy.user() + QLatin1Char(':') + proxy.password();
        route.proxyAuthorization = "Basic " + credentials.toUtf8().toBase64();
    }
    return route;
}

} // namespace

bool isLoopback(const QString& host)
{
    const QString name = host.endsWith(QLatin1Char('.')) ? host.chopped(1) : host;
    return name.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0 ||
           name.endsWith(QLatin1String(".localhost"), Qt::CaseInsensitive) || QHostAddress(name).isLoopback();
}

HttpRoute routeTo(const QUrl& url, const QList<QNetworkProxy>& proxies)
{
    HttpRoute direct = directRoute(url);
    if (isLoopback(direct.host)) {
        return direct;
    }
    for (const QNetworkProxy& proxy : proxies) {
        switch (proxy.type()) {
        case QNetworkProxy::NoProxy:
        case QNetworkProxy::DefaultProxy:
            return direct;
        case QNetworkProxy::HttpProxy:
        case QNetworkProxy::HttpCachingProxy:
            if (!isHttps(url)) {
                return forwardedRoute(proxy);
            }
            if (proxy.type() == QNetworkProxy::HttpProxy) {
                direct.tunnel = proxy;
                return direct;
            }
            break;
        case QNetworkProxy::Socks5Proxy:
            direct.tunnel = proxy;
            return direct;
        case QNetworkProxy::FtpCachingProxy:
            break;
        }
    }
    return direct;
}

HttpRoute systemRouteTo(const QUrl& url)
{
    if (isLoopback(url.host())) {
        return routeTo(url, {});
    }
    const QUrl told = url.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment);
    return routeTo(url, QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(told)));
}

} // namespace roost
