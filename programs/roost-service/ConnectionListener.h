#pragma once

#include <QByteArray>
#include <QSslConfiguration>
#include <QTcpServer>

#include <optional>

class QTcpSocket;

namespace roost::local {

/// Method and target of a request, as the client wrote them.
struct RequestLine {
    QByteArray method;
    QByteArray target;
};

/// Accepts connections and keeps the first line of each: the HTTP server behind it parses the target into a
/// URL and rewrites it on the way ("//a" becomes a host, "%7E" a "~"), which would hide what a client really
/// sends.
class ConnectionListener final : public QTcpServer {
public:
    explicit ConnectionListener(QObject* parent);

    /// Has the connections from now on speak TLS, and shows this to the other side.
    void encrypt(QSslConfiguration identity) { identity_ = std::move(identity); }

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    std::optional<QSslConfiguration> identity_;
};

/// The first line of a connection that a `ConnectionListener` accepted. Empty when it is no request line, and
/// when it has been taken before.
RequestLine takeRequestLine(QTcpSocket& socket);

} // namespace roost::local
