#pragma once

#include "service/HttpSyntax.h"

#include <QByteArray>
#include <QHostAddress>
#include <QList>
#include <QNetworkProxy>
#include <QString>
#include <QUrl>

namespace roost {

/// Where the connection for a request goes. A plain value.
struct HttpRoute {
    /// Who is called.
    QString host;
    quint16 port = 0;
    /// The addresses of `host` where they are known; otherwise they are looked up.
    QList<QHostAddress> addresses;
    /// What the socket is told to go through.
    QNetworkProxy tunnel = QNetworkProxy(QNetworkProxy::NoProxy);
    /// How the address stands in the request: `absolute` when `host` is a proxy that forwards.
    HttpSyntax::Target target = HttpSyntax::Target::origin;
    /// The value of "Proxy-Authorization" for that proxy, or empty.
    QByteArray proxyAuthorization;
};

/// Whether `host` names this machine (RFC 6761 §6.3, the loopback addresses).
bool isLoopback(const QString& host);

/// The route to `url`, http or https, by the first of `proxies` that can carry it; the direct one when there
/// is none, and always to a loopback host: what runs on this machine is not told to others.
HttpRoute routeTo(const QUrl& url, const QList<QNetworkProxy>& proxies);

/// The route to `url` by the proxies that the system's settings or the environment name for it. They learn
/// the scheme, host and path, never the query. Main thread; takes no time unless the settings name a script.
HttpRoute systemRouteTo(const QUrl& url);

} // namespace roost
