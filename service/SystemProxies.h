#pragma once

#include <QNetworkProxyFactory>

namespace roost {

/// The proxies that the system's settings or the environment name, for every host but this machine: what runs
/// here is not told to others.
class SystemProxies final : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override;
};

/// Whether `host` names this machine (RFC 6761 §6.3, the loopback addresses).
bool isLoopback(const QString& host);

} // namespace roost
