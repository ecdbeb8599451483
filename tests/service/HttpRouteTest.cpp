#include "service/HttpRoute.h"

#include <gmock/gmock.h>

namespace roost::test {

namespace {

const QUrl plain(QStringLiteral("http://roost.example/x"));
const QUrl secure(QStringLiteral("https://roost.example:8443/x"));

QNetworkProxy proxy(QNetworkProxy::ProxyType type)
{
    return QNetworkProxy(type, QStringLiteral("10.0.0.1"), 3128, QStringLiteral("user"),
                         QStringLiteral("pass"));
}

} // namespace

TEST(HttpRoute, TellsLoopbackNamesAndAddresses)
{
    for (const char16_t* host : {u"localhost", u"LOCALHOST", u"localhost.", u"roost.localhost", u"127.0.0.1",
                                 u"127.8.9.10", u"::1"}) {
        EXPECT_TRUE(isLoopback(QString::fromUtf16(host))) << QString::fromUtf16(host).toStdString();
    }
    for (const char16_t* host : {u"localhost.example", u"notlocalhost", u"128.0.0.1", u"10.0.0.1", u"::2",
                                 u"", u"127.0.0.1.example"}) {
        EXPECT_FALSE(isLoopback(QString::fromUtf16(host))) << QString::fromUtf16(host).toStdString();
    }
}

TEST(HttpRoute, GoesStraightToTheHostWithoutAProxy)
{
    const HttpRoute route = routeTo(plain, {});

    EXPECT_EQ(route.host, QStringLiteral("roost.example"));
    EXPECT_EQ(route.port, 80);
    EXPECT_TRUE(route.addresses.isEmpty());
    EXPECT_EQ(route.tunnel.type(), QNetworkProxy::NoProxy);
    EXPECT_EQ(route.target, HttpSyntax::Target::origin);
    EXPECT_EQ(routeTo(secure, {}).port, 8443);
    EXPECT_EQ(routeTo(QUrl(QStringLiteral("https://roost.example/")), {}).port, 443);
}

TEST(HttpRoute, LooksNoAddressUp)
{
    EXPECT_EQ(routeTo(QUrl(QStringLiteral("http://192.0.2.1/")), {}).addresses,
              QList<QHostAddress>{QHostAddress(QStringLiteral("192.0.2.1"))});
    EXPECT_EQ(routeTo(QUrl(QStringLiteral("http://[2001:db8::1]/")), {}).addresses,
              QList<QHostAddress>{QHostAddress(QStringLiteral("2001:db8::1"))});
}

TEST(HttpRoute, LetsAnHttpProxyForwardPlainRequests)
{
    for (const auto type : {QNetworkProxy::HttpProxy, QNetworkProxy::HttpCachingProxy}) {
        const HttpRoute route = routeTo(plain, {proxy(type)});

        EXPECT_EQ(route.host, QStringLiteral("10.0.0.1"));
        EXPECT_EQ(route.port, 3128);
        EXPECT_EQ(route.target, HttpSyntax::Target::absolute);
        EXPECT_EQ(route.proxyAuthorization, "Basic dXNlcjpwYXNz");
        EXPECT_EQ(route.tunnel.type(), QNetworkProxy::NoProxy);
    }
    QNetworkProxy anonymous = proxy(QNetworkProxy::HttpProxy);
    anonymous.setUser({});
    EXPECT_EQ(routeTo(plain, {anonymous}).proxyAuthorization, "");
}

TEST(HttpRoute, TunnelsToASecureAddress)
{
    for (const auto type : {QNetworkProxy::HttpProxy, QNetworkProxy::Socks5Proxy}) {
        const HttpRoute route = routeTo(secure, {proxy(type)});

        EXPECT_EQ(route.host, QStringLiteral("roost.example"));
        EXPECT_EQ(route.tunnel, proxy(type));
        EXPECT_EQ(route.target, HttpSyntax::Target::origin);
        EXPECT_EQ(route.proxyAuthorization, "");
    }
    EXPECT_EQ(routeTo(plain, {proxy(QNetworkProxy::Socks5Proxy)}).tunnel, proxy(QNetworkProxy::Socks5Proxy));
}

TEST(HttpRoute, TakesTheFirstProxyThatCanCarryTheRequest)
{
    const QNetworkProxy caching = proxy(QNetworkProxy::HttpCachingProxy);
    const QNetworkProxy ftp = proxy(QNetworkProxy::FtpCachingProxy);
    const QNetworkProxy socks = proxy(QNetworkProxy::Socks5Proxy);
    const QNetworkProxy none(QNetworkProxy::NoProxy);

    EXPECT_EQ(routeTo(secure, {caching, ftp, socks}).tunnel, socks);
    EXPECT_EQ(routeTo(secure, {none, socks}).tunnel.type(), QNetworkProxy::NoProxy);
    EXPECT_EQ(routeTo(secure, {caching}).tunnel.type(), QNetworkProxy::NoProxy);
}

TEST(HttpRoute, NeverGoesThroughAProxyToThisMachine)
{
    const QList<QNetworkProxy> proxies{proxy(QNetworkProxy::HttpProxy)};
    for (const char16_t* url : {u"http://localhost:1/", u"http://127.0.0.1:1/", u"https://[::1]:1/"}) {
        const HttpRoute route = routeTo(QUrl(QString::fromUtf16(url)), proxies);

        EXPECT_EQ(route.port, 1);
        EXPECT_EQ(route.tunnel.type(), QNetworkProxy::NoProxy);
        EXPECT_EQ(route.target, HttpSyntax::Target::origin);
    }
}

} // namespace roost::test
