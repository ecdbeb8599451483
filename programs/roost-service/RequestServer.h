#pragma once

#include "programs/roost-service/HttpValues.h"

#include <QAbstractHttpServer>
#include <QSslConfiguration>

#include <expected>
#include <functional>

namespace roost::local {

class ConnectionListener;

/// Listens on the loopback address and hands each request to one function. One request per connection: the
/// connection is closed after its answer, and further requests on it are not looked at, since a delayed
/// answer would be overtaken. Requests that name another host than the loopback one are refused with 421
/// before the function sees them, so that no web page can reach the service through a name of its own. Main
/// thread.
class RequestServer final : public QAbstractHttpServer {
public:
    using Handler = std::function<Reply(const Request&)>;

    explicit RequestServer(Handler handler);
    ~RequestServer() override;

    /// Begins to listen on 127.0.0.1; `port` 0 takes a free one. Gives the port, or why it cannot be had.
    std::expected<quint16, QString> listen(quint16 port);

    /// Has the connections from now on speak TLS, and shows this to the other side.
    void encrypt(const QSslConfiguration& identity);

private:
    bool handleRequest(const QHttpServerRequest& request, QTcpSocket* socket) override;
    void missingHandler(const QHttpServerRequest& request, QTcpSocket* socket) override;

    Handler handler_;
    /// The listening socket; belongs to the base class once it is bound.
    ConnectionListener* listener_;
};

} // namespace roost::local
