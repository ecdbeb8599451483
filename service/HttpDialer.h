#pragma once

#include "service/HttpRoute.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QList>
#include <QObject>
#include <QTcpSocket>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

namespace roost {

/// Makes one connection. A host with several addresses is tried address by address, the next one beginning
/// when the one before failed or took a quarter of a second (RFC 8305 §5), so that a family of addresses that
/// leads nowhere costs little; the first connection that stands is taken. Main thread. Deleted while it
/// tries, it gives up silently.
class HttpDialer final : public QObject {
public:
    enum class Security { none, tls };

    /// Called at most once, on a later turn of the event loop. The socket is connected and not yet encrypted;
    /// with `tls` it is a `QSslSocket`. Without a socket, `code` is the code of the failure.
    using Done = std::function<void(std::unique_ptr<QTcpSocket> socket, int code)>;

    HttpDialer(HttpRoute route, Security security, Done done, QObject* parent);
    ~HttpDialer() override;

private:
    void lookedUp(const QHostInfo& info);
    void tryNext();
    void connected(QTcpSocket* socket);
    void failed(QTcpSocket* socket, QAbstractSocket::SocketError error);
    QTcpSocket* newSocket();

    HttpRoute route_;
    Security security_;
    Done done_;
    QList<QHostAddress> addresses_;
    /// Children of this that have neither connected nor failed.
    std::vector<QTcpSocket*> trying_;
    QTimer next_;
    int code_ = 0;
};

/// `addresses` with the families taken in turns, beginning with that of the first (RFC 8305 §4).
QList<QHostAddress> inTurns(const QList<QHostAddress>& addresses);

} // namespace roost
