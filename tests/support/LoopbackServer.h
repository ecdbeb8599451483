#pragma once

#include <QByteArray>
#include <QList>
#include <QSslConfiguration>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace roost::test {

/// A server on 127.0.0.1 that answers each request with the raw bytes and the misbehaviour that a script
/// says, on the event loop of the test. Speaks TLS when it is given a configuration.
class LoopbackServer {
public:
    struct Send {
        QByteArray bytes;
    };
    /// One byte after the other, with a pause after each.
    struct Drip {
        QByteArray bytes;
        std::chrono::milliseconds pause;
    };
    /// The same bytes again and again, as fast as they are taken, without end.
    struct Flood {
        QByteArray bytes;
    };
    /// The rest of the script waits for as long.
    struct Pause {
        std::chrono::milliseconds duration;
    };
    /// A word from the test at this point.
    struct Do {
        std::function<void()> what;
    };
    /// Nothing more, and the connection stays open.
    struct Hang {};
    /// The orderly end of the connection, when all is sent.
    struct Close {};
    /// The connection is torn down.
    struct Reset {};

    using Step = std::variant<Send, Drip, Flood, Pause, Do, Hang, Close, Reset>;
    /// A script that ends without `Hang`, `Close`, `Reset` or `Flood` waits for the next request on the
    /// connection.
    using Script = std::vector<Step>;

    explicit LoopbackServer(std::optional<QSslConfiguration> tls = std::nullopt);
    ~LoopbackServer();

    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    /// The scripts of the next requests, in order; the last one goes on for all that follow. Without any,
    /// requests hang.
    void answer(Script script);

    /// Sent to every client as soon as it has connected, before it asks for anything.
    void greet(QByteArray bytes) { greeting_ = std::move(bytes); }

    quint16 port() const;
    /// "http://127.0.0.1:port" with `path` after it, https with TLS.
    QUrl url(const QString& path = QStringLiteral("/")) const;

    /// The requests as received, whole, bodies too.
    const QList<QByteArray>& requests() const { return requests_; }
    /// Connections that were made, and those of them that still stand.
    int connections() const { return connections_; }
    int openConnections() const { return openConnections_; }

private:
    class Connection;

    Script nextScript();
    void accept();

    bool isTls_;
    QList<Script> scripts_;
    QList<QByteArray> requests_;
    QByteArray greeting_;
    int connections_ = 0;
    int openConnections_ = 0;
    /// Owns the connections; last, since they use what stands above.
    std::unique_ptr<QTcpServer> server_;
};

/// An answer with a "Content-Length"; `headers` are whole lines, each with its line end.
QByteArray httpAnswer(int status, const QByteArray& body, const QByteArray& headers = {});

} // namespace roost::test
