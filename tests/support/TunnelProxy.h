#pragma once

#include <QByteArray>
#include <QList>
#include <QTcpServer>

namespace roost::test {

/// An HTTP proxy on 127.0.0.1 that takes "CONNECT" and leads every connection to one port of this machine,
/// whatever name was asked for.
class TunnelProxy {
public:
    explicit TunnelProxy(quint16 destination);

    quint16 port() const { return server_.serverPort(); }

    /// The heads of the requests that the proxy itself was sent.
    const QList<QByteArray>& requests() const { return requests_; }

private:
    void accept();
    void connectThrough(QTcpSocket* client);

    quint16 destination_;
    QList<QByteArray> requests_;
    QTcpServer server_;
};

} // namespace roost::test
